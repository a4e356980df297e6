#include "tests/support/fake_platform.hpp"

namespace vorquill21::test {

void RecordingDesktop::ShowMessage(TextView text, MessageStyle style, TextView title) {
  messages.push_back({Text(text), style, Text(title)});
}

std::int32_t RecordingDesktop::OpenDocument(const DocumentRequest& request) {
  openedDocuments.push_back(request);
  return openResult;
}

std::optional<Text> RecordingDesktop::BrowseForFolder(std::int32_t ownerWindow, TextView title) {
  browseOwners.push_back(ownerWindow);
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
  codePage_.AppendText(bytes, text);
  return bytes.size();
}

void ChosenLocale::AppendToCodePage(TextView text, std::string& bytes) const {
  codePage_.AppendBytes(text, bytes);
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
