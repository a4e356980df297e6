#pragma once

#include "vorquill21/platform/files.hpp"
#include "vorquill21/platform/settings.hpp"

namespace vorquill21 {

/// The name of the file that holds the settings of an application: its letters in lower case, digits, "-" and
/// "_"; every other unit as "%" and four hexadecimal digits. Names that match ignoring case share a file.
Text SettingsFileName(TextView application);

/// The settings as one SettingsDocument per application in the user's configuration folder, which is made
/// when it is missing. A file is always replaced as a whole. Any name and any text survive. Two processes
/// that write at the same moment do not wait for each other: the later one wins.
class PosixSettings : public Settings {
 public:
  explicit PosixSettings(Files& files) : files_(files) {}

  Text Get(TextView application, TextView section, TextView key, TextView defaultText) const override;
  void Set(TextView application, TextView section, TextView key, TextView value) override;

 private:
  Files& files_;
};

}  // namespace vorquill21
