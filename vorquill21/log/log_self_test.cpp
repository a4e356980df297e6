#include "vorquill21/log/log.hpp"

namespace vorquill21 {

void CLog::SelfTest_Main(FailedTests&) const {
  constexpr std::int32_t kMaxFileChars = 100;
  const vorquill21::Text folder = platform_.GetProcess().LibraryFolder().append(u"\\self test\\");
  const vorquill21::Text path = vorquill21::Text(folder).append(u"test log.txt");
  files_.DirMake(folder);

  CLog log(platform_);
  log.Initialise(path, kMaxFileChars, false, false, u"TEST LOG");
  log.StartLogging();
  for (const ELogAction action : {logDiagnostic, logExact, logException, logExceptionError, logNormal}) {
    log.AddEntry(u"test entry", action);
  }
  log.StopLogging();
  if (files_.FileExists(path)) platform_.GetFiles().Delete(path);
}

}  // namespace vorquill21
