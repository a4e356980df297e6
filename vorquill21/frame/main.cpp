#include "vorquill21/frame/main.hpp"

#include "vorquill21/frame/support.hpp"

namespace vorquill21 {

Main::Main(Platform& platform)
    : platform_(platform),
      file_(std::make_shared<CFile>(platform)),
      filestream_(std::make_shared<CFileStream>(platform)),
      geometry_(std::make_shared<CGeometry>(platform)),
      interpolate_(std::make_shared<CInterpolate>(platform)),
      log_(std::make_shared<CLog>(platform)),
      mathUtils_(std::make_shared<CMathUtils>(platform)),
      osUtils_(std::make_shared<COSUtils>(platform)),
      statistics_(std::make_shared<CStatistics>(platform)),
      string_(std::make_shared<CString>(platform)),
      trigonometry_(std::make_shared<CTrigonometry>(platform)) {}

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
