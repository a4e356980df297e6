#include "vorquill21/frame/support.hpp"

#include "vorquill21/files/file.hpp"
#include "vorquill21/filestream/file_stream.hpp"
#include "vorquill21/interpolate/interpolate.hpp"
#include "vorquill21/log/log.hpp"
#include "vorquill21/numeric/geometry.hpp"
#include "vorquill21/numeric/math_utils.hpp"
#include "vorquill21/numeric/statistics.hpp"
#include "vorquill21/numeric/trigonometry.hpp"
#include "vorquill21/text/string.hpp"

namespace vorquill21 {

bool MSupport::RunAllSelfTests(Platform& platform, FailedTests& aoFailedTests) {
  aoFailedTests.clear();
  CStatistics(platform).SelfTest_Main(aoFailedTests);
  CTrigonometry(platform).SelfTest_Main(aoFailedTests);
  CMathUtils(platform).SelfTest_Main(aoFailedTests);
  CGeometry(platform).SelfTest_Main(aoFailedTests);
  CInterpolate(platform).SelfTest_Main(aoFailedTests);
  CFile(platform).SelfTest_Main(aoFailedTests);
  CString(platform).SelfTest_Main(aoFailedTests);
  CLog(platform).SelfTest_Main(aoFailedTests);
  CFileStream(platform).SelfTest_Main(aoFailedTests);
  if (aoFailedTests.empty()) return true;
  platform.GetDesktop().Beep();
  return false;
}

}  // namespace vorquill21
