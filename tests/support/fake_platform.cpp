#include "tests/support/fake_platform.hpp"

#include <algorithm>
#include <array>
#include <iterator>

namespace vorquill21::test {
namespace {

/// Windows-1252 from byte 80 on; its five undefined bytes stand for the code points of the same number.
constexpr std::array<char16_t, 32> kUpperControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

char16_t UnitOfByte(unsigned char byte) {
  return byte >= 0x80 && byte < 0xA0 ? kUpperControls[byte - 0x80u] : byte;
}

char ByteOfUnit(char16_t unit) {
  const auto found = std::ranges::find(kUpperControls, unit);
  if (found != kUpperControls.end()) return static_cast<char>(0x80 + (found - kUpperControls.begin()));
  return unit < 0x80 || (unit >= 0xA0 && unit <= 0xFF) ? static_cast<char>(unit) : '?';
}

}  // namespace

void RecordingDesktop::ShowMessage(TextView text, MessageStyle style, TextView title) {
  messages.push_back({Text(text), style, Text(title)});
}

std::int32_t RecordingDesktop::OpenDocument(const DocumentRequest& request) {
  openedDocuments.push_back(request);
  return openResult;
}

std::optional<Text> RecordingDesktop::BrowseForFolder(std::int32_t, TextView title) {
  browseTitles.emplace_back(title);
  return browsedFolder;
}

std::int32_t RecordingDesktop::SpecialFolder(std::int32_t identifier, Text& path) {
  constexpr std::int32_t kUnknownFolder = -2147024809;  // 80070057 hexadecimal
  const auto found = specialFolders.find(identifier);
  if (found == specialFolders.end()) return kUnknownFolder;
  path = found->second;
  return 0;
}

std::size_t ChosenLocale::AppendFromCodePage(std::string_view bytes, Text& text) const {
  std::ranges::transform(bytes, std::back_inserter(text),
                         [](char byte) { return UnitOfByte(static_cast<unsigned char>(byte)); });
  return bytes.size();
}

void ChosenLocale::AppendToCodePage(TextView text, std::string& bytes) const {
  std::ranges::transform(text, std::back_inserter(bytes), ByteOfUnit);
}

Text MemorySettings::Get(TextView application, TextView section, TextView key, TextView defaultText) const {
  const auto found = values_.find({UpperCase(application), UpperCase(section), UpperCase(key)});
  return found == values_.end() ? Text(defaultText) : found->second;
}

void MemorySettings::Set(TextView application, TextView section, TextView key, TextView value) {
  values_[{UpperCase(application), UpperCase(section), UpperCase(key)}] = value;
}

ShownMessage ErrorMessage(TextView text) {
  return {Text(text), kExclamation, Text(kLibraryTitle)};
}

}  // namespace vorquill21::test
