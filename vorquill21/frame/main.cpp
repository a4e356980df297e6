#include "vorquill21/frame/main.hpp"

#include "vorquill21/frame/support.hpp"

namespace vorquill21 {
namespace {

template <typename Class>
std::shared_ptr<Class> Made(Platform& platform) {
  return TranslatingMemoryErrors([&] { return std::make_shared<Class>(platform); });
}

}  // namespace

Main::Main(Platform& platform)
    : platform_(platform),
      file_(Made<CFile>(platform)),
      filestream_(Made<CFileStream>(platform)),
      geometry_(Made<CGeometry>(platform)),
      interpolate_(Made<CInterpolate>(platform)),
      log_(Made<CLog>(platform)),
      mathUtils_(Made<CMathUtils>(platform)),
      osUtils_(Made<COSUtils>(platform)),
      statistics_(Made<CStatistics>(platform)),
      string_(Made<CString>(platform)),
      trigonometry_(Made<CTrigonometry>(platform)) {}

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
