// Entries as the log writes them, and what a start leaves of the file.
//
// Input: a byte for the action, a byte for the bound, and the entry; each byte of it is one unit.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "fuzz/require.hpp"
#include "tests/support/fake_platform.hpp"
#include "vorquill21/log/log.hpp"

namespace vorquill21 {
namespace {

using test::Require;

constexpr TextView kPath = u"/library/host.log";

/// Every run of `sought` becomes one `replacement`.
Text ReplaceRuns(const Text& text, const Text& sought, const Text& replacement) {
  Text result;
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t begin = i;
    while (text.compare(i, sought.size(), sought) == 0) i += sought.size();
    if (i > begin) {
      result += replacement;
    } else {
      result += text[i++];
    }
  }
  return result;
}

/// The line of an entry, one step after the other.
Text ExpectedLine(const Text& entry, std::int32_t action) {
  if (entry.empty() || action > logDiagnostic) return {};
  Text line = entry;
  if (action == logException || action == logExceptionError) line.insert(0, u"* Warning: ");
  if (action == logExceptionError) line += u"\tError: 0\t";
  if (action == logExact) return line;
  while (!line.empty() && (line.back() == u'\r' || line.back() == u'\n')) line.pop_back();
  line = ReplaceRuns(line, u"\r\n", u": ");
  line = ReplaceRuns(line, u"\r", u": ");
  line = ReplaceRuns(line, u"\n", u"");
  return ReplaceRuns(line, u"\t", u" ");
}

void CheckEntry(const Text& entry, std::int32_t action) {
  test::FakePlatform fake;
  CLog log(fake.platform);
  log.Initialise(kPath, 0, true, true, u"");
  std::vector<Text> raised;
  log.EntryLogged.Connect([&](TextView message, ELogAction) { raised.emplace_back(message); });
  log.AddEntry(entry, static_cast<ELogAction>(action));

  const Text line = ExpectedLine(entry, action);
  Require(raised == (line.empty() ? std::vector<Text>() : std::vector<Text>{line}));
  Require(fake.files.FileIsThere(kPath) == !line.empty());
  if (!line.empty()) Require(fake.files.Content(kPath) == ToCodePage(fake.locale, line) + "\r\n");
  if (action != logExact) Require(line.find_first_of(u"\r\n\t") == Text::npos);
}

void CheckStart(const std::string& old, std::size_t bound) {
  test::FakePlatform fake;
  fake.files.Replace(kPath, old);
  CLog log(fake.platform);
  log.Initialise(kPath, static_cast<std::int32_t>(bound), false, true, u"");
  log.StartLogging();

  const std::string withNul = old + '\0';
  const bool isCut = withNul.size() > bound;
  const std::string kept = isCut ? withNul.substr(withNul.size() - bound) + "\r\n" : old;
  const std::string rule = std::string(59, '-') + "\r\n";
  Require(fake.files.Content(kPath) == kept + rule + "Log started at 09:05 21/11/2026\r\n" + rule);
}

}  // namespace
}  // namespace vorquill21

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  const vorquill21::Text entry(data + 2, data + size);
  vorquill21::CheckEntry(entry, data[0] % 7);
  vorquill21::CheckStart(std::string(data + 2, data + size), data[1]);
  return 0;
}
