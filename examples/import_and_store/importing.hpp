#pragma once

#include "report.hpp"
#include "session.hpp"
#include "vorquill21/vorquill21.hpp"

namespace example {

/// A load cell's calibration: what it showed under each load, in two runs of ascending loads.
struct Calibration {
  static constexpr std::int32_t kRuns = 2;
  static constexpr std::int32_t kPointsPerRun = 20;

  vorquill21::Variant loads;  // arrays from 0
  vorquill21::Variant deflections;
};

/// Imports the calibration with the importer's stored settings and checks it; `isUsable` tells whether it can
/// be worked with.
Calibration ImportCalibration(const Session& session, vorquill21::TextView folder, Expectations& expectations,
                              bool& isUsable);

/// Imports a file that somebody damaged and shows what comes of each fault.
void ImportFaultyColumns(const Session& session, vorquill21::TextView folder, Expectations& expectations);

}  // namespace example
