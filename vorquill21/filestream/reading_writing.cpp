#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "vorquill21/filestream/document.hpp"
#include "vorquill21/filestream/file_stream.hpp"
#include "vorquill21/filestream/reporting.hpp"

namespace vorquill21 {
namespace {

/// The text of a file and of a NUL byte behind it. Beside the text it takes memory for one block only.
Text ReadWithFinalNul(const Platform& platform, TextView path) {
  constexpr std::size_t kBlockLength = std::size_t{1} << 17;
  const auto reader = platform.GetFiles().OpenForReading(path);
  Text text;
  text.reserve(static_cast<std::size_t>(reader->Length()) + 1);
  std::vector<char> block(kBlockLength + 1);
  std::size_t waiting = 0;  // bytes of a character that was cut off at the end of the last block
  for (bool isAtEnd = false; !isAtEnd;) {
    const std::size_t count = reader->Read(std::span(block).subspan(waiting, kBlockLength - waiting));
    isAtEnd = count == 0;
    std::size_t filled = waiting + count;
    if (isAtEnd) block[filled++] = '\0';
    const std::size_t taken = platform.GetLocale().AppendFromCodePage({block.data(), filled}, text);
    waiting = filled - taken;
    std::copy_n(block.data() + taken, waiting, block.data());
  }
  for (const char byte : std::span(block).first(waiting)) text += static_cast<unsigned char>(byte);
  return text;
}

}  // namespace

bool CFileStream::FileRead(TextView asFilePath, Text* asFileStream) {
  return TranslatingMemoryErrors([&] {
    const Text filePath(asFilePath);  // it may be a view of the text that is emptied now
    if (asFileStream != nullptr) asFileStream->clear();
    const auto read = [&] {
      if (!moFile.FileExists(filePath)) return false;
      Text text = ReadWithFinalNul(platform_, filePath);
      if (text.size() < 2) throw LibraryError(kInvalidProcedureCall);
      text.resize(text.size() - 2);  // the NUL and the file's last character
      if (asFileStream != nullptr) *asFileStream = text;
      msFileStream->Assign(std::move(text));
      mbDecSepMatches = FileDecimalSeparator() == TextView(&msSystemDecSep, 1);
      return true;
    };
    return ReportingErrors(platform_, mbQuiet, false, read, [&](const LibraryError&) {
      return Text(u"An error occurred while reading file: ").append(filePath);
    });
  });
}

bool CFileStream::FileWrite(TextView asFilePath, bool abAppend) {
  const auto write = [&] {
    CompleteDocument();
    const TextView text = msFileStream->AllText();
    std::string bytes;
    bytes.reserve(text.size() + 2);
    platform_.GetLocale().AppendToCodePage(text, bytes);
    bytes += "\r\n";
    Files& files = platform_.GetFiles();
    abAppend ? files.Append(asFilePath, bytes) : files.Replace(asFilePath, bytes);
  };
  try {
    TranslatingMemoryErrors(write);
    return true;
  } catch (const LibraryError& error) {
    if (mbQuiet) return false;
    throw TranslatingMemoryErrors([&] {
      return LibraryError(error.Number(), u"CFileStream.FileWrite",
                          Text(u"An error occurred while writing file: ")
                              .append(asFilePath)
                              .append(u"\r\nError was: ")
                              .append(error.Description()));
    });
  }
}

}  // namespace vorquill21
