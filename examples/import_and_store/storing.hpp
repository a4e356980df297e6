#pragma once

#include "fitting.hpp"
#include "importing.hpp"
#include "report.hpp"
#include "session.hpp"
#include "vorquill21/vorquill21.hpp"

namespace example {

/// Stores the calibration and its fit as fields and tables in the file at `path`.
void StoreCalibration(const Session& session, const Calibration& calibration, const CalibrationFit& fit,
                      vorquill21::TextView path, Expectations& expectations);

/// Reads the file with an object of its own and compares.
void ReadCalibrationBack(const Session& session, const Calibration& calibration, vorquill21::TextView path,
                         Expectations& expectations);

}  // namespace example
