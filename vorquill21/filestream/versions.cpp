#include "vorquill21/filestream/document.hpp"
#include "vorquill21/filestream/file_stream.hpp"
#include "vorquill21/filestream/number_reader.hpp"
#include "vorquill21/filestream/reporting.hpp"
#include "vorquill21/frame/types/number_text.hpp"

namespace vorquill21 {
namespace {

/// The version with the blank that marks its end in comparisons.
Text WithEndMark(TextView version) {
  return Text(TrimBlanks(version)) + u' ';
}

/// Why the actual version is not accepted, in words for the user; empty when it is. All versions come in
/// capitals and with their end marks.
Text RefusalOf(TextView actual, TextView current, TextView compatible) {
  const bool isListed = Text(compatible).append(current).find(actual) != Text::npos;
  const bool isMissing = actual == u" ";
  if (isListed && !isMissing) return {};
  Text refusal(u"Wrong file version\r\n\r\nFile version required = ");
  refusal.append(compatible).append(1, u' ').append(current).append(u"\r\n");
  if (isListed) return refusal.append(u"No file version available");
  return refusal.append(u"File version available = ").append(actual);
}

}  // namespace

Variant CFileStream::Initialise(TextView asCurrentVersion,
                                const BoundedArray<Variant>& aaCompatibleVersions) {
  TranslatingMemoryErrors([&] {
    msCurrentVersion = WithEndMark(asCurrentVersion);
    msCompatibleVersions.clear();
    const Bounds bounds = aaCompatibleVersions.BoundsOf(1);
    for (std::int64_t i = bounds.lower; i <= bounds.upper; ++i) {
      const Variant& version = aaCompatibleVersions(static_cast<std::int32_t>(i));
      msCompatibleVersions.append(ToText(version, msSystemDecSep)).append(1, u' ');
    }
    msFileStream->Assign(Text());
    AddField(u"DEC SEP", TextView(&msSystemDecSep, 1));
    AddField(u"FILEVERSION", TrimBlanks(msCurrentVersion));
    mbInitialised = true;
  });
  return {};
}

Text CFileStream::FileVersion() {
  return TranslatingMemoryErrors([&] { return ToText(GetFieldString(u"FILEVERSION"), msSystemDecSep); });
}

Text CFileStream::FileVersionNumber() {
  return TranslatingMemoryErrors([&] {
    const Text version = FileVersion();
    const std::size_t lastBlank = version.rfind(u' ');
    if (lastBlank == Text::npos) return Text();
    const TextView lastWord = TextView(version).substr(lastBlank + 1);
    return NumberToText(TextToNumber(ReplaceAll(lastWord, u".", FileDecimalSeparator())), msSystemDecSep);
  });
}

Text CFileStream::FileVersionType() {
  return TranslatingMemoryErrors([&] {
    const Text version = FileVersion();
    const std::size_t firstBlank = version.find(u' ');
    return firstBlank == Text::npos ? Text() : version.substr(0, firstBlank);
  });
}

bool CFileStream::IsCompatibleVersion(bool abSilent, const Variant& asActualVersion,
                                      const Variant& asCurrentVersion, const Variant& asCompatibleVersions,
                                      Text* asStatus) {
  const auto textOf = [this](const Variant& version) { return ToText(version, msSystemDecSep); };
  const auto check = [&] {
    if (asStatus != nullptr) asStatus->clear();
    const Text actual = asActualVersion.IsMissing() ? ActualVersion() : WithEndMark(textOf(asActualVersion));
    const Text current =
        WithEndMark(asCurrentVersion.IsMissing() ? msCurrentVersion : textOf(asCurrentVersion));
    const Text compatible =
        asCompatibleVersions.IsMissing() ? msCompatibleVersions : WithEndMark(textOf(asCompatibleVersions));
    const Text status = RefusalOf(UpperCase(actual), UpperCase(current), UpperCase(compatible));
    if (asStatus != nullptr) *asStatus = status;
    if (!status.empty() && !abSilent) platform_.ShowError(status);
    return status.empty();
  };
  return ReportingErrors(platform_, mbQuiet, false, check, [&](const LibraryError& error) {
    return Text(u"An error occured while checking for the required file version: ")
        .append(msCompatibleVersions)
        .append(u"\r\nError was ")
        .append(error.Description());
  });
}

/// The document's version with its end mark, under its own or its older name.
Text CFileStream::ActualVersion() {
  Text version = WithEndMark(FileVersion());
  if (version != u" ") return version;
  return WithEndMark(ToText(GetFieldString(u"FILE VERSION"), msSystemDecSep));
}

}  // namespace vorquill21
