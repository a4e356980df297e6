#pragma once

#include "vorquill21/export.hpp"
#include "vorquill21/frame/types/text.hpp"

namespace vorquill21 {

/// A store of texts that belongs to the user, by application, section and key. Names match ignoring case. Any
/// text survives, line ends and NUL characters in names excepted.
class VORQUILL21_API Settings {
 public:
  virtual ~Settings() = default;

  /// The stored text, or `defaultText` when there is none or the store cannot be read.
  virtual Text Get(TextView application, TextView section, TextView key, TextView defaultText) const = 0;

  /// Stores `value`, replacing what was there; the rest of the store stays. After an error (a runtime number)
  /// the store holds what it held.
  virtual void Set(TextView application, TextView section, TextView key, TextView value) = 0;
};

}  // namespace vorquill21
