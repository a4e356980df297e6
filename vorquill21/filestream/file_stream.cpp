#include "vorquill21/filestream/file_stream.hpp"

#include "vorquill21/filestream/document.hpp"
#include "vorquill21/filestream/number_reader.hpp"

namespace vorquill21 {

CFileStream::CFileStream(Platform& platform)
    : platform_(platform),
      moFile(platform),
      msFileStream(TranslatingMemoryErrors([] { return std::make_unique<Document>(); })),
      msSystemDecSep(platform.GetLocale().DecimalSeparator()) {}

CFileStream::~CFileStream() = default;

Text CFileStream::GetContents() {
  return TranslatingMemoryErrors([&] {
    CompleteDocument();
    return Text(msFileStream->AllText());
  });
}

void CFileStream::SetContents(TextView asFileStream) {
  TranslatingMemoryErrors([&] {
    msFileStream->Assign(Text(asFileStream));
    const TextView version = GetField(u"FILEVERSION").value_or(TextView());
    if (!version.empty()) msCurrentVersion = version;
  });
}

void CFileStream::CompleteDocument() {
  const auto readsAsEmpty = [this](TextView name) { return GetField(name).value_or(TextView()).empty(); };
  if (readsAsEmpty(u"FILEVERSION")) AddField(u"FILEVERSION", TrimBlanks(msCurrentVersion));
  if (readsAsEmpty(u"DEC SEP")) AddField(u"DEC SEP", TextView(&msSystemDecSep, 1));
}

const Text& CFileStream::FileDecimalSeparator() {
  if (msFileDecSep.empty()) msFileDecSep = GetFieldString(u"DEC SEP", u".").As<Text>();
  return msFileDecSep;
}

NumberReader CFileStream::ReaderOfNumbers() {
  if (mbDecSepMatches) return NumberReader(TextView(&msSystemDecSep, 1), msSystemDecSep);
  return NumberReader(FileDecimalSeparator(), msSystemDecSep);
}

double CFileStream::TextToNumber(TextView text) {
  return ReaderOfNumbers()(text);
}

double CFileStream::VariantToNumber(const Variant& value) {
  if (const Text* text = value.If<Text>()) return TextToNumber(*text);
  return TextToNumber(ToText(value, msSystemDecSep));
}

}  // namespace vorquill21
