#include "vorquill21/files/file.hpp"
#include "vorquill21/files/guarded.hpp"

namespace vorquill21 {
namespace {

constexpr TextView kNothing;

TextView FolderOf(TextView path) noexcept {
  const std::size_t backslash = path.rfind(u'\\');
  return backslash == TextView::npos ? kNothing : path.substr(0, backslash + 1);
}

TextView ExtensionOf(TextView path) noexcept {
  const std::size_t last = path.find_last_of(u"\\.");
  const bool isDot = last != TextView::npos && path[last] == u'.';
  return isDot ? path.substr(last + 1) : kNothing;
}

TextView TitleOf(TextView path) noexcept {
  // Without a separator npos + 1 is 0: the whole path.
  TextView name = path.substr(path.rfind(u'\\') + 1);
  name = name.substr(name.rfind(u'/') + 1);
  return name.substr(0, name.rfind(u'.'));
}

}  // namespace

Text CFile::ParseFileDir(TextView asFilePath) const {
  return ResultOr(Text(), [&] { return Text(FolderOf(asFilePath)); });
}

Text CFile::ParseFileExt(TextView asFilePath) const {
  return ResultOr(Text(), [&] { return Text(ExtensionOf(asFilePath)); });
}

Text CFile::ParseFileName(TextView asFilePath) const {
  return ResultOr(Text(), [&] {
    Text name(TitleOf(asFilePath));
    const TextView extension = ExtensionOf(asFilePath);
    if (!extension.empty()) name.append(u".").append(extension);
    return name;
  });
}

Text CFile::ParseFileTitle(TextView asFilePath) const {
  return ResultOr(Text(), [&] { return Text(TitleOf(asFilePath)); });
}

Text CFile::EnsureExtension(TextView asFilePath, TextView asExt) const {
  if (asFilePath.empty()) throw LibraryError(kSubscriptOutOfRange);
  return TranslatingMemoryErrors([&] {
    const std::size_t dot = asFilePath.rfind(u'.');
    const TextView lastPart = asFilePath.substr(dot + 1);
    if (EqualIgnoringCase(lastPart, asExt)) return Text(asFilePath);
    return Text(asFilePath.substr(0, dot)).append(u".").append(asExt);
  });
}

}  // namespace vorquill21
