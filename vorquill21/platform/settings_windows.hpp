#pragma once

#include "vorquill21/platform/settings.hpp"

namespace vorquill21 {

/// The settings as values of the registry: the key "Software", application, section of the current user holds
/// them by name. In names of applications and sections "\" stands as "%5C" and "%" as "%25"; an empty one
/// stands as "%".
class WindowsSettings : public Settings {
 public:
  Text Get(TextView application, TextView section, TextView key, TextView defaultText) const override;

  /// Error 5 for a name that holds a NUL.
  void Set(TextView application, TextView section, TextView key, TextView value) override;
};

}  // namespace vorquill21
