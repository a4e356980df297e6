#include "columns/fields.hpp"

#include <algorithm>
#include <cmath>
#include <string>

#include "vorquill21/vorquill21.hpp"

namespace vorquill21::tool {
namespace {

/// Digits with at most one point, and a sign: what most fields are.
bool IsPlain(std::string_view field) {
  constexpr std::size_t kMostDigits = 300;
  if (field.starts_with('-') || field.starts_with('+')) field.remove_prefix(1);
  const std::size_t point = field.find('.');
  const auto areDigits = [](std::string_view text) {
    return std::ranges::all_of(text, [](char byte) { return byte >= '0' && byte <= '9'; });
  };
  if (field.empty() || field.size() > kMostDigits) return false;
  if (point == std::string_view::npos) return areDigits(field);
  return field.size() > 1 && areDigits(field.substr(0, point)) && areDigits(field.substr(point + 1));
}

}  // namespace

FieldKind KindOf(std::string_view field) {
  if (IsPlain(field)) return FieldKind::kNumber;
  std::string text(field.substr(std::min(field.find_first_not_of(' '), field.size())));
  std::ranges::replace(text, ':', '.');
  const auto parsed = ParseNumber(text.data(), text.data() + text.size(), '.');
  const auto length = static_cast<std::size_t>(parsed.end - text.data());
  if (length == 0) return FieldKind::kNoNumber;
  if (!std::isfinite(parsed.value)) return FieldKind::kTooLarge;
  const bool isWhole = text.find_first_not_of(" \t", length) == std::string::npos;
  return isWhole ? FieldKind::kNumber : FieldKind::kPartlyNumber;
}

}  // namespace vorquill21::tool
