#include "vorquill21/filestream/file_stream.hpp"

#include "vorquill21/filestream/document.hpp"

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

}  // namespace vorquill21
