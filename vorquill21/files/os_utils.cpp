#include "vorquill21/files/os_utils.hpp"

#include <utility>

#include "vorquill21/files/guarded.hpp"

namespace vorquill21 {

COSUtils::COSUtils(Platform& platform) : platform_(platform) {}

bool COSUtils::GetSpecialFolderPath(std::int32_t anCLSID, Text& asPath) const {
  constexpr std::int32_t kFound = 0;
  constexpr std::int32_t kMissing = 1;
  constexpr std::int32_t kFailed = -1;
  Text path;
  const std::int32_t result =
      ResultOr(kFailed, [&] { return platform_.GetDesktop().SpecialFolder(anCLSID, path); });
  const bool isFound = result == kFound;
  if (!isFound) {
    const TextView reason = result == kMissing ? u"Folder Does Not Exist" : u"Folder Not Valid on this OS";
    path.clear();
    Succeeds([&] { path = reason; });
  }
  asPath = std::move(path);
  return isFound;
}

}  // namespace vorquill21
