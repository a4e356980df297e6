#include "vorquill21/platform/settings_posix.hpp"

#include "vorquill21/frame/types/library_error.hpp"
#include "vorquill21/platform/settings_document.hpp"
#include "vorquill21/platform/user_folders_posix.hpp"

namespace vorquill21 {
namespace {

Text SettingsPath(TextView application) {
  return FromUtf8(ConfigurationFolder()) + u'/' + SettingsFileName(application);
}

/// The stored settings; empty ones when there is no file yet.
SettingsDocument ReadDocument(Files& files, TextView path) {
  try {
    return SettingsDocument(ReadWholeFile(files, path));
  } catch (const LibraryError& error) {
    if (error.Number() != kFileNotFound && error.Number() != kPathNotFound) throw;
    return {};
  }
}

}  // namespace

Text SettingsFileName(TextView application) {
  constexpr TextView kDigits = u"0123456789ABCDEF";
  constexpr char16_t kCaseDistance = u'a' - u'A';
  Text name;
  for (const char16_t unit : UpperCase(application)) {
    if (unit >= u'A' && unit <= u'Z') {
      name += static_cast<char16_t>(unit + kCaseDistance);
    } else if ((unit >= u'0' && unit <= u'9') || unit == u'-' || unit == u'_') {
      name += unit;
    } else {
      name += u'%';
      for (int shift = 12; shift >= 0; shift -= 4) name += kDigits[(unit >> shift) & 0xF];
    }
  }
  return name + u".conf";
}

Text PosixSettings::Get(TextView application, TextView section, TextView key, TextView defaultText) const {
  try {
    return ReadDocument(files_, SettingsPath(application)).Find(section, key).value_or(Text(defaultText));
  } catch (const LibraryError&) {
    return Text(defaultText);
  }
}

void PosixSettings::Set(TextView application, TextView section, TextView key, TextView value) {
  const Text path = SettingsPath(application);
  SettingsDocument document = ReadDocument(files_, path);
  document.Put(section, key, value);
  MakeNestedFolders(files_, FromUtf8(ConfigurationFolder()));
  files_.Replace(path, document.ToBytes());
}

}  // namespace vorquill21
