#pragma once

#include "importing.hpp"
#include "report.hpp"
#include "session.hpp"
#include "vorquill21/vorquill21.hpp"

namespace example {

/// The polynomial of second order that the calibration comes to.
struct CalibrationFit {
  vorquill21::BoundedArray<double> coefficients;  ///< of 1, load, load^2 from index 1 on; the others are 0
  double deviation = 0.0;                         ///< standard deviation of the residuals
};

/// Fits the calibration, compares with the coefficients that the header of its file certifies, and looks at
/// the residuals.
CalibrationFit FitCalibration(const Session& session, const Calibration& calibration,
                              vorquill21::TextView folder, Expectations& expectations);

/// Finds the loads that belong to readings, inside and outside the first run.
void InvertReadings(const Session& session, const Calibration& calibration, Expectations& expectations);

}  // namespace example
