#include "vorquill21/frame/main.hpp"

#include "vorquill21/frame/support.hpp"
#include "vorquill21/frame/types/library_error.hpp"

namespace vorquill21 {

Main::Main(Platform& platform)
    : platform_(platform),
      file_(MakeShared<CFile>(platform)),
      filestream_(MakeShared<CFileStream>(platform)),
      geometry_(MakeShared<CGeometry>(platform)),
      interpolate_(MakeShared<CInterpolate>(platform)),
      log_(MakeShared<CLog>(platform)),
      mathUtils_(MakeShared<CMathUtils>(platform)),
      osUtils_(MakeShared<COSUtils>(platform)),
      statistics_(MakeShared<CStatistics>(platform)),
      string_(MakeShared<CString>(platform)),
      trigonometry_(MakeShared<CTrigonometry>(platform)) {}

Variant Main::Initialise(const BoundedArray<Variant>& avParamArray) const {
  constexpr double kRunInSilence = 1;
  constexpr double kRunAndReport = 2;
  if (avParamArray.UpperBound() < 0) return {};
  const Variant& request = avParamArray(avParamArray.LowerBound());
  if (request.IsMissing()) return {};
  const double number = ToDouble(request, platform_.GetLocale().DecimalSeparator());
  TranslatingMemoryErrors([&] {
    if (number == kRunInSilence) RunSelfTests(false);
    if (number == kRunAndReport) RunSelfTests(true);
  });
  return {};
}

bool Main::RunSelfTests(bool abShowResult) const {
  FailedTests failedTests;
  const bool passed = MSupport::RunAllSelfTests(platform_, failedTests);
  if (!abShowResult) return passed;
  if (passed) {
    platform_.GetDesktop().ShowMessage(u"All self tests passed", kInformation, kLibraryTitle);
    return true;
  }
  Text report = u"Failed the following tests:\r";
  for (const Text& name : failedTests) report.append(name).append(u"\r");
  platform_.GetDesktop().ShowMessage(report, kExclamation, u"Self Tests in Kestrovan");
  return false;
}

}  // namespace vorquill21
