// Any text is a document: whatever the index remembers, it reads as the plain search of the text does,
// through additions and removals; and what is written to a file comes back.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "fuzz/require.hpp"
#include "tests/filestream/literal_document.hpp"
#include "tests/support/fake_platform.hpp"
#include "vorquill21/filestream/document.hpp"
#include "vorquill21/filestream/file_stream.hpp"

namespace vorquill21 {
namespace {

using test::Require;

constexpr std::size_t kMostNames = 40;

/// What stands between brackets in the text: up to the first, and up to the second closing one.
std::vector<Text> NamesIn(const Text& text) {
  std::vector<Text> names = {u"", u"A", u"["};
  for (std::size_t open = text.find(u'['); open != Text::npos && names.size() < kMostNames;
       open = text.find(u'[', open + 1)) {
    const std::size_t close = text.find(u']', open);
    if (close == Text::npos) break;
    names.push_back(text.substr(open + 1, close - open - 1));
    const std::size_t secondClose = text.find(u']', close + 1);
    if (secondClose != Text::npos) names.push_back(text.substr(open + 1, secondClose - open - 1));
  }
  return names;
}

void RequireSame(Document& document, const test::LiteralDocument& literal, const Text& name) {
  const auto field = document.Find(name);
  const auto expected = literal.TextOf(name);
  Require(field.has_value() == expected.has_value());
  if (field) Require(document.TextOf(*field) == *expected);
}

/// The document lives as the program says: each byte takes one of the names and does something with it.
void CompareInLife(const Text& text, const std::string& program) {
  const std::vector<Text> names = NamesIn(text);
  Document document;
  document.Assign(text);
  test::LiteralDocument literal{text};
  for (int round = 0; round < 10; ++round) {
    for (const Text& name : names) RequireSame(document, literal, name);
  }
  for (const char step : program) {
    const auto code = static_cast<unsigned char>(step);
    const Text& name = names[code / 4 % names.size()];
    const auto field = document.Find(name);
    if (code % 4 < 3) {
      if (field) document.Remove(*field);
      Require(literal.Remove(name) == field.has_value());
    }
    if (code % 4 < 2) {
      const Text record = Text(u"[") + name + (code % 4 == 0 ? u"]\t1\r\n" : u"]\n");
      Document::Draft draft(document);
      draft.Target() += record;
      draft.Add();
      literal.Append(record);
    }
    RequireSame(document, literal, name);
  }
  for (const Text& name : names) RequireSame(document, literal, name);
  Require(document.AllText() == literal.text);
}

void WriteAndRead(const Text& text) {
  constexpr TextView kPath = u"/library/data.txt";
  const Text complete = Text(u"[DEC SEP]\t.\r\n[FILEVERSION]\tV 1\r\n") + text;
  test::FakePlatform fake;
  CFileStream written(fake.platform);
  written.SetContents(complete);
  Require(written.FileWrite(kPath));
  CFileStream read(fake.platform);
  Text readText;
  Require(read.FileRead(kPath, &readText));
  Require(readText == complete + u'\r');
  for (const Text& name : NamesIn(text)) {
    Require(read.FieldExists(name) == written.FieldExists(name));
    Require(read.GetFieldString(name) == written.GetFieldString(name));
  }
  Require(read.FileWrite(kPath));
  Require(ToCodePage(fake.locale, readText) + "\r\n" == fake.files.Content(kPath));
  Require(fake.desktop.messages.empty());
}

}  // namespace
}  // namespace vorquill21

/// The first byte tells how many bytes behind it are the program; the others are the document.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace vorquill21;
  if (size == 0) return 0;
  const std::string bytes(data + 1, data + size);
  const std::size_t programLength = std::min<std::size_t>(data[0], bytes.size());
  const Text text = FromCodePage(test::ChosenLocale(), bytes.substr(programLength));
  CompareInLife(text, bytes.substr(0, programLength));
  WriteAndRead(text);
  return 0;
}
