#include <optional>

#include "vorquill21/files/file.hpp"
#include "vorquill21/files/guarded.hpp"

namespace vorquill21 {
namespace {

constexpr std::int32_t kLargestFailure = 32;

TextView DescriptionOf(std::int32_t shellResult) {
  switch (shellResult) {
    case 2:
      return u"File not found";
    case 3:
      return u"Path not found";
    case 5:
      return u"Access denied";
    case 8:
      return u"Out of memory";
    case 11:
      return u"Invalid EXE file or error in EXE image";
    case 26:
      return u"A sharing violation occurred";
    case 27:
      return u"Incomplete or invalid file association";
    case 28:
      return u"DDE Time out";
    case 29:
      return u"DDE transaction failed";
    case 30:
      return u"DDE busy";
    case 31:
      return u"No association for file extension";
    case 32:
      return u"DLL not found";
    default:
      return u"Unknown error";
  }
}

}  // namespace

void CFile::BrowseForFolder(std::int32_t anOwnerFormhWnd, TextView asTitleText, Text& asFolder) const {
  Succeeds([&] {
    const auto picked = platform_.GetDesktop().BrowseForFolder(anOwnerFormhWnd, asTitleText);
    if (picked) asFolder = *picked;
  });
}

bool CFile::OpenDoc(TextView asDocName, Text* asMsg) const {
  constexpr std::int32_t kUnknownFailure = 0;
  const std::int32_t result = ResultOr(kUnknownFailure, [&] {
    return platform_.GetDesktop().OpenDocument({.document = Text(asDocName),
                                                .verb = u"Open",
                                                .parameters = u"",
                                                .folder = u"C:\\",
                                                .showMode = 1,
                                                .ownedByDesktop = true});
  });
  if (result > kLargestFailure) return true;
  if (asMsg != nullptr) Succeeds([&] { *asMsg = DescriptionOf(result); });
  return false;
}

}  // namespace vorquill21
