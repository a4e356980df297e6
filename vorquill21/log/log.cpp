#include "vorquill21/log/log.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <exception>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

#include "vorquill21/files/guarded.hpp"
#include "vorquill21/frame/types/number_text.hpp"
#include "vorquill21/platform/wildcard.hpp"

namespace vorquill21 {
namespace {

constexpr TextView kRule = u"-----------------------------------------------------------";
constexpr std::string_view kLineEnd = "\r\n";

struct HandledError {
  std::int32_t number = 0;
  Text description;
};

HandledError NumberAndDescription(const std::exception_ptr& handled) {
  constexpr std::int32_t kUnspecified = -2147467259;  // 80004005 hexadecimal
  try {
    TranslatingMemoryErrors([&] {
      if (handled != nullptr) std::rethrow_exception(handled);
    });
  } catch (const LibraryError& error) {
    return {error.Number(), error.Description()};
  } catch (const std::exception& error) {
    return {kUnspecified, FromUtf8(error.what())};
  } catch (...) {
    return {kUnspecified, {}};
  }
  return {};
}

/// The entry as the action has it, before it is made one line.
Text Marked(TextView entry, ELogAction action, const std::exception_ptr& handled) {
  constexpr TextView kWarning = u"* Warning: ";
  switch (action) {
    case logException:
      return Text(kWarning).append(entry);
    case logExceptionError: {
      const HandledError error = NumberAndDescription(handled);
      return Text(kWarning)
          .append(entry)
          .append(u"\tError: ")
          .append(NumberToText(error.number))
          .append(u"\t")
          .append(error.description);
    }
    default:
      return Text(entry);
  }
}

bool IsWritten(ELogAction action, bool logsDiagnostics) {
  return action == logDiagnostic ? logsDiagnostics : action >= logExact && action <= logExceptionError;
}

bool HasControls(TextView line) {
  char16_t controls = 0;  // looked at once in the end, so that many units are taken at a time
  for (const char16_t unit : line) controls = static_cast<char16_t>(controls | (unit < u' ' ? 1 : 0));
  return controls != 0;
}

Text InOneLine(const CString& strings, Text line) {
  if (!HasControls(line)) return line;
  line = strings.RTrimMulti(line, BoundedArray<Variant>({u"\r\n", u"\r", u"\n"}));
  line = strings.ReplaceMulti(line, u"\r\n", u": ");
  line = strings.ReplaceMulti(line, u"\r", u": ");
  line = strings.ReplaceMulti(line, u"\n", u"");
  return strings.ReplaceMulti(line, u"\t", u" ");
}

/// Tenths of a second in the whole number nearest to the decimal value of `seconds`, a half away from zero.
double Tenths(double seconds) {
  const Text decimal = NumberToText(seconds, u'.');
  const std::optional<double> shifted = TextToNumber(Text(decimal).append(u"E1"), u'.');
  constexpr double kTenthsPerSecond = 10;
  return std::round(shifted ? *shifted : seconds * kTenthsPerSecond);  // very small or large: "1E-05"
}

Text WithOneDecimal(double seconds) {
  constexpr std::size_t kLongest = 320;
  std::array<char, kLongest> text;
  const double rounded = Tenths(seconds) / 10 + 0.0;  // no negative zero
  char* const end =
      std::to_chars(text.data(), text.data() + text.size(), rounded, std::chars_format::fixed, 1).ptr;
  return Text(text.data(), end);
}

/// The last bytes of a file whose bytes are characters, cut as CutToEnd promises.
std::optional<std::string> CutBytes(ByteReader& reader, std::uint32_t most) {
  const std::uint64_t length = reader.Length();
  if (length < most) return std::nullopt;
  const std::uint32_t kept = most == 0 ? 0 : most - 1;
  reader.Skip(length - kept);
  std::string bytes = ReadRest(reader, std::uint64_t{kept} + kLineEnd.size() + 1);
  if (bytes.size() > kept) bytes.erase(0, bytes.size() - kept);  // the file has grown meanwhile
  if (most > 0) bytes += '\0';
  return bytes;
}

/// The same for any code page, by way of the whole text.
std::optional<std::string> CutText(ByteReader& reader, const Locale& locale, std::uint32_t most) {
  const Text text = FromCodePage(locale, ReadRest(reader, reader.Length() + 1)) + u'\0';
  if (text.size() <= most) return std::nullopt;
  return ToCodePage(locale, TextView(text).substr(text.size() - most));
}

/// The last `most` characters of a file and a NUL behind it, or nothing when these are no more than `most`.
std::optional<std::string> CutToEnd(const Platform& platform, TextView path, std::uint32_t most) {
  const auto reader = platform.GetFiles().OpenForReading(path);
  const Locale& locale = platform.GetLocale();
  return locale.HasSingleBytes() ? CutBytes(*reader, most) : CutText(*reader, locale, most);
}

}  // namespace

CLog::CLog(Platform& platform) : platform_(platform), files_(platform), strings_(platform) {}

void CLog::RequireInitialised(TextView routine) const {
  constexpr std::int32_t kNotInitialised = 1000;
  if (isInitialised_) return;
  throw TranslatingMemoryErrors([&] {
    return LibraryError(kNotInitialised, vorquill21::Text(u"CLog.").append(routine), u"Log not initialised");
  });
}

void CLog::AddEntryWhile(const std::exception_ptr& handled, TextView asLogEntry, ELogAction aeAction) {
  RequireInitialised(u"AddEntry");
  if (aeAction == logException || aeAction == logExceptionError) containsExceptions_ = true;
  if (asLogEntry.empty() || !IsWritten(aeAction, logDiagnostics_)) return;
  const vorquill21::Text line = TranslatingMemoryErrors([&] {
    vorquill21::Text marked = Marked(asLogEntry, aeAction, handled);
    return aeAction == logExact ? marked : InOneLine(strings_, std::move(marked));
  });
  if (line.empty()) return;
  Succeeds([&] {
    std::string bytes;
    bytes.reserve(line.size() + kLineEnd.size());
    platform_.GetLocale().AppendToCodePage(line, bytes);
    bytes += kLineEnd;
    platform_.GetFiles().Append(filepath_, bytes);
  });
  EntryLogged.Raise(line, aeAction);  // the last step: a handler may destroy the log
}

void CLog::AddNormalEntries(std::initializer_list<TextView> entries) {
  const std::weak_ptr<const char> life = life_;
  for (const TextView entry : entries) {
    if (life.expired()) return;
    AddEntry(entry, logNormal);
  }
}

void CLog::Initialise(TextView asLogFilePath, std::int32_t anMaxFileChars, bool abLogDiagnostics,
                      bool abAppendEntries, const Variant& asLogTitle) {
  TranslatingMemoryErrors([&] {
    vorquill21::Text title = ToText(asLogTitle, platform_.GetLocale().DecimalSeparator());
    filepath_ = vorquill21::Text(asLogFilePath);
    title_ = std::move(title);
  });
  maxFileChars_ = anMaxFileChars;
  logDiagnostics_ = abLogDiagnostics;
  appendEntries_ = abAppendEntries;
  isInitialised_ = true;
}

void CLog::Clear() {
  // With wildcards the name would stand for other files, too.
  if (!HasWildcards(files_.ParseFileName(filepath_)) && files_.FileExists(filepath_)) {
    Succeeds([&] { platform_.GetFiles().Delete(filepath_); });
  }
  containsExceptions_ = false;
}

void CLog::Truncate() const {
  if (maxFileChars_ < 0) return;
  Succeeds([&] {
    auto kept = CutToEnd(platform_, filepath_, static_cast<std::uint32_t>(maxFileChars_));
    if (kept) platform_.GetFiles().Replace(filepath_, *kept += kLineEnd);
  });
}

void CLog::StartLogging() {
  RequireInitialised(u"StartLogging");
  Succeeds([&] {
    if (!appendEntries_) Clear();
    if (files_.FileExists(filepath_)) Truncate();
    containsExceptions_ = false;
    startTime_ = platform_.GetProcess().SecondsSinceMidnight();
    const Locale& locale = platform_.GetLocale();
    const auto started = vorquill21::Text(u"Log started at ")
                             .append(locale.ShortTime())
                             .append(u"\t")
                             .append(locale.ShortDate());
    const vorquill21::Text title = title_;  // a handler may initialise the log anew
    AddNormalEntries({kRule, title, started, kRule});
  });
}

void CLog::StopLogging() {
  RequireInitialised(u"StopLogging");
  const double elapsed = platform_.GetProcess().SecondsSinceMidnight() - startTime_;
  const auto stopped = TranslatingMemoryErrors([&] {
    return vorquill21::Text(u"Log stopped. Time from log start = ")
        .append(WithOneDecimal(elapsed))
        .append(u" secs");
  });
  AddNormalEntries({u" ", stopped, u" "});
}

bool CLog::View(TextView) const {
  RequireInitialised(u"View");
  return ResultOr(false, [&] {
    platform_.GetDesktop().OpenDocument({.document = filepath_,
                                         .verb = u"open",
                                         .parameters = u"0",
                                         .folder = u"0",
                                         .showMode = 5,
                                         .ownedByDesktop = false});
    return true;
  });
}

vorquill21::Text CLog::Text() const {
  vorquill21::Text content;
  files_.FileReadAsString(filepath_, content);
  return content;
}

}  // namespace vorquill21
