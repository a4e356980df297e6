#pragma once

#include <map>
#include <tuple>
#include <vector>

#include "tests/support/memory_files.hpp"
#include "vorquill21/platform/code_page.hpp"
#include "vorquill21/platform/platform.hpp"

namespace vorquill21::test {

/// A message box that was shown.
struct ShownMessage {
  Text text;
  std::int32_t style = 0;
  Text title;
  friend bool operator==(const ShownMessage&, const ShownMessage&) = default;
};

/// Remembers what it was asked for; answers are set beforehand.
class RecordingDesktop : public Desktop {
 public:
  void ShowMessage(TextView text, MessageStyle style, TextView title) override;
  void Beep() override { ++beeps; }
  std::int32_t OpenDocument(const DocumentRequest& request) override;
  std::optional<Text> BrowseForFolder(std::int32_t ownerWindow, TextView title) override;
  std::int32_t SpecialFolder(std::int32_t identifier, Text& path) override;

  std::vector<ShownMessage> messages;
  int beeps = 0;
  std::vector<DocumentRequest> openedDocuments;
  std::int32_t openResult = 33;
  std::vector<Text> browseTitles;
  std::vector<std::int32_t> browseOwners;
  std::optional<Text> browsedFolder;
  std::map<std::int32_t, Text> specialFolders;
};

/// Number, time and date settings that the test chooses; the code page is Windows-1252.
class ChosenLocale : public Locale {
 public:
  char16_t DecimalSeparator() const override { return decimalSeparator; }
  Text ShortTime() const override { return shortTime; }
  Text ShortDate() const override { return shortDate; }
  bool HasSingleBytes() const override { return true; }
  std::size_t AppendFromCodePage(std::string_view bytes, Text& text) const override;
  void AppendToCodePage(TextView text, std::string& bytes) const override;

  char16_t decimalSeparator = u'.';
  Text shortTime = u"09:05";
  Text shortDate = u"21/11/2026";

 private:
  CodePage codePage_{Windows1252Units()};
};

class FixedProcess : public Process {
 public:
  Text CommandLine() const override { return commandLine; }
  double SecondsSinceMidnight() const override { return seconds; }
  Text LibraryFolder() const override { return libraryFolder; }

  Text commandLine;
  double seconds = 0;
  Text libraryFolder = u"/library";
};

class MemorySettings : public Settings {
 public:
  Text Get(TextView application, TextView section, TextView key, TextView defaultText) const override;
  void Set(TextView application, TextView section, TextView key, TextView value) override;

 private:
  std::map<std::tuple<Text, Text, Text>, Text> values_;  // names in capitals
};

/// A whole platform made of fakes. The folder "/library" exists and is the library folder.
struct FakePlatform {
  FakePlatform() { files.MakeFolder(process.libraryFolder); }

  /// The platform with another service in the place of its own.
  Platform With(Files& other) { return {other, desktop, locale, process, settings}; }
  Platform With(Desktop& other) { return {files, other, locale, process, settings}; }
  Platform With(Locale& other) { return {files, desktop, other, process, settings}; }
  Platform With(Process& other) { return {files, desktop, locale, other, settings}; }

  MemoryFiles files;
  RecordingDesktop desktop;
  ChosenLocale locale;
  FixedProcess process;
  MemorySettings settings;
  Platform platform{files, desktop, locale, process, settings};
};

/// The message box with which the library reports an error.
ShownMessage ErrorMessage(TextView text);

}  // namespace vorquill21::test
