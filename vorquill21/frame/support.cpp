#include "vorquill21/frame/support.hpp"

#include <optional>

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

namespace {

/// A desktop without message boxes: what goes wrong in a self-test is told by its name.
class SilentDesktop : public Desktop {
 public:
  explicit SilentDesktop(Desktop& desktop) : desktop_(desktop) {}

  void ShowMessage(TextView, MessageStyle, TextView) override {}
  void Beep() override { desktop_.Beep(); }
  std::int32_t OpenDocument(const DocumentRequest& request) override {
    return desktop_.OpenDocument(request);
  }
  std::optional<Text> BrowseForFolder(std::int32_t ownerWindow, TextView title) override {
    return desktop_.BrowseForFolder(ownerWindow, title);
  }
  std::int32_t SpecialFolder(std::int32_t identifier, Text& path) override {
    return desktop_.SpecialFolder(identifier, path);
  }

 private:
  Desktop& desktop_;
};

}  // namespace

bool MSupport::RunAllSelfTests(Platform& platform, FailedTests& aoFailedTests) {
  SilentDesktop desktop(platform.GetDesktop());
  Platform silent(platform.GetFiles(), desktop, platform.GetLocale(), platform.GetProcess(),
                  platform.GetSettings());
  aoFailedTests.clear();
  CStatistics(silent).SelfTest_Main(aoFailedTests);
  CTrigonometry(silent).SelfTest_Main(aoFailedTests);
  CMathUtils(silent).SelfTest_Main(aoFailedTests);
  CGeometry(silent).SelfTest_Main(aoFailedTests);
  CInterpolate(silent).SelfTest_Main(aoFailedTests);
  CFile(silent).SelfTest_Main(aoFailedTests);
  CString(silent).SelfTest_Main(aoFailedTests);
  CLog(silent).SelfTest_Main(aoFailedTests);
  CFileStream(silent).SelfTest_Main(aoFailedTests);
  if (aoFailedTests.empty()) return true;
  platform.GetDesktop().Beep();
  return false;
}

}  // namespace vorquill21
