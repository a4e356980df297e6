#pragma once

#include "importing.hpp"
#include "report.hpp"
#include "vorquill21/vorquill21.hpp"

namespace example {

/// Stores the calibration as fields and tables in the file at `path`.
void StoreCalibration(vorquill21::Platform& platform, const Calibration& calibration,
                      vorquill21::TextView path, Expectations& expectations);

/// Reads the file with an object of its own and compares.
void ReadCalibrationBack(vorquill21::Platform& platform, const Calibration& calibration,
                         vorquill21::TextView path, Expectations& expectations);

}  // namespace example
