#pragma once

#include "vorquill21/frame/types/failed_tests.hpp"
#include "vorquill21/platform/platform.hpp"

namespace vorquill21 {

/// Routines that belong to no class of the interface. Not exported.
class MSupport {
 public:
  /// Runs the self-tests of all classes, each on a fresh instance made with `platform`, in this order:
  /// CStatistics, CTrigonometry, CMathUtils, CGeometry, CInterpolate, CFile, CString, CLog, CFileStream.
  /// `aoFailedTests` is emptied and receives the names of the checks that failed, in that order. True when
  /// none did; otherwise the platform beeps once. Message boxes that a class would show are not shown.
  ///
  /// The checks work in the folder "self test" under the library folder, where they leave "3d try.txt" alone.
  /// An error that CLog's self-test raises ends the run and is raised: its file cannot be deleted.
  static bool RunAllSelfTests(Platform& platform, FailedTests& aoFailedTests);
};

}  // namespace vorquill21
