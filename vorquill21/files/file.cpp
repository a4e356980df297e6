#include "vorquill21/files/file.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <string>
#include <utility>

#include "vorquill21/files/crc32.hpp"
#include "vorquill21/files/guarded.hpp"

namespace vorquill21 {
namespace {

/// Runs `operation` and tells whether it succeeded; if not, and not silent, the user is told, too, as far as
/// there is memory left for that.
template <typename Operation>
bool SucceedsOrReports(const Platform& platform, TextView sentence, TextView subject, bool isSilent,
                       Operation operation) {
  const bool succeeded = Succeeds(operation);
  if (!succeeded && !isSilent) Succeeds([&] { platform.ShowError(Text(sentence).append(subject)); });
  return succeeded;
}

/// Removes `unit` from the end of `text` if it stands there. An empty text has no last unit: error 5.
void RemoveLast(char16_t unit, Text& text) {
  if (text.empty()) throw LibraryError(kInvalidProcedureCall);
  if (text.back() == unit) text.pop_back();
}

/// Moves the end of a list that is numbered from 0, or that was never dimensioned.
void ResizeFromZero(BoundedArray<Text>& list, std::int32_t upper) {
  if (list.Rank() != 0 && list.LowerBound() != 0) throw LibraryError(kSubscriptOutOfRange);
  list.ReDimPreserve(upper);
}

/// The part of `text` that is encoded next, so short that it and its bytes stay in the nearest cache; it
/// never ends between the two units of one character.
TextView NextBlock(TextView text) {
  constexpr std::size_t kBlockLength = 2048;
  TextView block = text.substr(0, kBlockLength);
  const bool cutsPair = block.size() < text.size() && (block.back() & 0xFC00) == 0xD800;
  if (cutsPair) block.remove_suffix(1);
  return block;
}

Text UpperCaseHexadecimal(std::uint32_t number) {
  std::array<char, 8> digits;
  char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), number, 16).ptr;
  return UpperCase(Text(digits.data(), end));
}

}  // namespace

CFile::CFile(Platform& platform) : platform_(platform) {}

bool CFile::CompareFiles(TextView asFilePath1, TextView asFilePath2) const {
  Text text1;
  Text text2;
  return FileReadAsString(asFilePath1, text1) && FileReadAsString(asFilePath2, text2) &&
         EqualIgnoringCase(text1, text2);
}

Text CFile::Crc32Make(TextView asCheckText) const {
  return ResultOr(Text(), [&] {
    Crc32 crc;
    std::string bytes;
    for (TextView rest = asCheckText; !rest.empty();) {
      const TextView block = NextBlock(rest);
      rest.remove_prefix(block.size());
      bytes.clear();
      platform_.GetLocale().AppendToCodePage(block, bytes);
      crc.Add(bytes);
    }
    return UpperCaseHexadecimal(crc.Value());
  });
}

bool CFile::DirExists(TextView asPath) const {
  return ResultOr(false, [&] { return platform_.GetFiles().FolderExists(asPath); });
}

bool CFile::DirMake(TextView asDirPath) const {
  return DirExists(asDirPath) || Succeeds([&] { platform_.GetFiles().MakeFolder(asDirPath); });
}

void CFile::DirMakeNested(TextView asPath) const {
  if (DirExists(asPath)) return;
  std::size_t levelEnd = 0;
  for (std::size_t from = 0; from <= asPath.size(); from = levelEnd + 1) {
    levelEnd = std::min(asPath.find(u'\\', from), asPath.size());
    try {
      TranslatingMemoryErrors([&] { platform_.GetFiles().MakeFolder(asPath.substr(0, levelEnd)); });
    } catch (const LibraryError& error) {
      if (error.Number() != kPathFileAccess) {
        throw LibraryError(static_cast<RuntimeErrorNumber>(error.Number()));
      }
    }
  }
}

bool CFile::FileExists(TextView asFileName) const {
  if (asFileName.empty() || asFileName.back() == u'\\') return false;
  return ResultOr(false, [&] {
    return std::ranges::any_of(platform_.GetFiles().List(asFileName), &DirectoryEntry::IsOrdinaryFile);
  });
}

bool CFile::FileReadAsString(TextView asFilePath, Text& asFileString, bool abSilent) const {
  constexpr TextView kSentence = u"An error occurred while reading file: ";
  Text filePath;  // the caller's path may be a view of the text that is cleared now
  const bool isKept =
      SucceedsOrReports(platform_, kSentence, asFilePath, abSilent, [&] { filePath = asFilePath; });
  asFileString.clear();
  if (!isKept || !FileExists(filePath)) return false;
  return SucceedsOrReports(platform_, kSentence, filePath, abSilent, [&] {
    std::string bytes = ReadWholeFile(platform_.GetFiles(), filePath);
    bytes += '\0';
    Text content = FromCodePage(platform_.GetLocale(), bytes);
    RemoveLast(u'\0', content);
    RemoveLast(u'\n', content);
    RemoveLast(u'\r', content);
    asFileString = std::move(content);
  });
}

bool CFile::FileWriteAsString(TextView asFilePath, TextView asFileString, bool abSilent) const {
  constexpr std::string_view kLineEnd = "\r\n";
  return SucceedsOrReports(platform_, u"An error occurred while writing file: ", asFilePath, abSilent, [&] {
    std::string bytes;
    bytes.reserve(asFileString.size() + kLineEnd.size());
    platform_.GetLocale().AppendToCodePage(asFileString, bytes);
    bytes += kLineEnd;
    platform_.GetFiles().Replace(asFilePath, bytes);
  });
}

void CFile::ListFilesMatchingExt(TextView asDir, TextView asExtension, BoundedArray<Text>& asFilesList,
                                 std::int32_t& anFilesCount) const {
  anFilesCount = 0;
  Succeeds([&] {
    const Text pattern = Text(asDir).append(u"\\*.").append(asExtension);
    for (DirectoryEntry& entry : platform_.GetFiles().List(pattern)) {
      if (entry.isFolder || entry.isSystem) continue;
      if (entry.name.empty() || entry.name == u"." || entry.name == u"..") break;
      ++anFilesCount;
      ResizeFromZero(asFilesList, anFilesCount - 1);
      asFilesList(anFilesCount - 1) = std::move(entry.name);
    }
  });
}

}  // namespace vorquill21
