#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "vorquill21/frame/types/text.hpp"

namespace vorquill21 {

/// An 8-bit code page of the system, by the promises of Locale.
class SystemCodePage {
 public:
  /// The page of this number: 1252, 932, 65001, ...
  static std::unique_ptr<SystemCodePage> Make(unsigned number);

  /// The number of the page that the system's 8-bit calls use.
  static unsigned CurrentNumber();

  virtual ~SystemCodePage() = default;

  virtual bool HasSingleBytes() const = 0;
  virtual std::size_t AppendText(std::string_view bytes, Text& text) const = 0;
  virtual void AppendBytes(TextView text, std::string& bytes) const = 0;
};

}  // namespace vorquill21
