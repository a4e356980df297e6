#include <algorithm>
#include <vector>

#include "vorquill21/filestream/bracket_search.hpp"
#include "vorquill21/filestream/document.hpp"
#include "vorquill21/filestream/file_stream.hpp"
#include "vorquill21/filestream/number_reader.hpp"
#include "vorquill21/filestream/record_writer.hpp"
#include "vorquill21/filestream/reporting.hpp"
#include "vorquill21/frame/types/number_text.hpp"

namespace vorquill21 {
namespace {

TextView WithoutSurroundings(TextView text) noexcept {
  text.remove_prefix(std::min(text.find_first_not_of(u'\t'), text.size()));
  const auto isCut = [](char16_t unit) {
    return unit == u'\r' || unit == u'\n' || unit == u'\t' || unit == u' ';
  };
  while (!text.empty() && isCut(text.back())) text.remove_suffix(1);
  return text;
}

bool HoldsOneValue(TextView fieldText) noexcept {
  return !fieldText.empty() && FindUnit(fieldText, 0, u'\t') == fieldText.size();
}

std::vector<Variant> SplitAtTabs(TextView text) {
  std::vector<Variant> parts;
  for (std::size_t from = 0; from <= text.size();) {
    const std::size_t tab = FindUnit(text, from, u'\t');
    parts.emplace_back(text.substr(from, tab - from));
    from = tab + 1;
  }
  return parts;
}

bool IsGap(const Variant& value) {
  const Text* text = value.If<Text>();
  return text != nullptr && text->empty();
}

/// Puts the default's elements where values are empty or missing at the end; `i` tells how far it came.
void FillGaps(BoundedArray<Variant>& values, const Variant& defaults, std::int32_t& i) {
  const std::int32_t lastDefault = ArrayBounds(defaults).upper;
  for (i = 0; i <= values.UpperBound(); ++i) {
    if (IsGap(values(i))) values(i) = ArrayElement(defaults, i);
  }
  for (; i <= lastDefault; ++i) {
    Variant element = ArrayElement(defaults, i);
    values.ReDimPreserve(i);
    values(i) = std::move(element);
  }
}

/// Calls `visit` with each index of an array, which has one dimension.
template <typename T, typename Visit>
void ForEachIndex(const BoundedArray<T>& array, Visit visit) {
  const Bounds bounds = array.BoundsOf(1);
  for (std::int64_t i = bounds.lower; i <= bounds.upper; ++i) visit(static_cast<std::int32_t>(i));
}

/// Replaces the elements by what `convert` makes of them.
template <typename T, typename Convert>
Variant Converted(BoundedArray<T> array, Convert convert) {
  ForEachIndex(array, [&](std::int32_t i) { array(i) = convert(array(i)); });
  return array;
}

/// The same elements in an array that can hold values of any kind.
BoundedArray<Variant> AsVariants(const BoundedArray<Text>& texts) {
  std::vector<Variant> elements;
  ForEachIndex(texts, [&](std::int32_t i) { elements.emplace_back(texts(i)); });
  return BoundedArray<Variant>(std::move(elements), texts.LowerBound());
}

/// The index as decimal text with a blank for its sign.
Text WithSignPlace(std::int32_t index) {
  return Text(u" ") + NumberToText(index);
}

}  // namespace

void CFileStream::AddField(TextView asFieldName, const Variant& avFieldValues) {
  const auto add = [&] {
    RemoveField(asFieldName);
    Document::Draft record(*msFileStream);
    RecordWriter writer(msSystemDecSep, record.Target());
    writer.WriteName(asFieldName);
    if (avFieldValues.IsArray()) {
      const std::int32_t upper = ArrayBounds(avFieldValues).upper;
      for (std::int32_t i = 0; i <= upper; ++i) {
        writer.Write(u'\t');
        writer.Write(ArrayElement(avFieldValues, i));
      }
    } else {
      writer.Write(u'\t');
      writer.Write(avFieldValues);
    }
    writer.Write(kLineEnd);
    writer.Flush();
    record.Add();
    return true;
  };
  ReportingErrors(platform_, mbQuiet, false, add, [&](const LibraryError&) {
    return Text(u"An error occurred while adding field: ").append(asFieldName).append(u" to the filestream");
  });
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

Variant CFileStream::GetFieldString(TextView asFieldName, const Variant& avDefaultValues) {
  return TranslatingMemoryErrors([&] {
    const TextView fieldText = GetField(asFieldName).value_or(TextView());
    return ValuesOrDefault(fieldText, avDefaultValues).value_or(Variant());
  });
}

Variant CFileStream::GetFieldNumber(TextView asFieldName, const Variant& avDefaultValues) {
  return TranslatingMemoryErrors([&]() -> Variant {
    const TextView fieldText = GetField(asFieldName).value_or(TextView());
    if (HoldsOneValue(fieldText)) return TextToNumber(fieldText);
    std::optional<Variant> values = ValuesOrDefault(fieldText, avDefaultValues);
    if (!values) return {};
    if (values->IsArray()) return ArrayToNumbers(*values);
    return VariantToNumber(*values);
  });
}

std::optional<Variant> CFileStream::ValuesOrDefault(TextView fieldText, const Variant& defaults) {
  std::int32_t i = 0;
  const auto combine = [&]() -> std::optional<Variant> {
    if (fieldText.empty()) return defaults.IsMissing() ? Variant(Text()) : defaults;
    if (HoldsOneValue(fieldText)) return Variant(fieldText);
    BoundedArray<Variant> values(SplitAtTabs(fieldText));
    if (defaults.IsArray()) FillGaps(values, defaults, i);
    return Variant(std::move(values));
  };
  return ReportingErrors(platform_, mbQuiet, std::optional<Variant>(), combine, [&](const LibraryError&) {
    return Text(u"An error occurred while getting sub field: ") + WithSignPlace(i);
  });
}

Variant CFileStream::ArrayToNumbers(const Variant& array) {
  const auto toNumber = [this](const Variant& element) { return VariantToNumber(element); };
  if (const auto* doubles = array.If<BoundedArray<double>>()) return Converted(*doubles, toNumber);
  if (const auto* texts = array.If<BoundedArray<Text>>()) return Converted(AsVariants(*texts), toNumber);
  return Converted(array.As<BoundedArray<Variant>>(), toNumber);
}

bool CFileStream::RemoveField(TextView asFieldName) {
  const auto remove = [&] {
    const std::optional<FieldPosition> field = FindField(asFieldName);
    if (field) msFileStream->Remove(*field);
    return field.has_value();
  };
  return ReportingErrors(platform_, mbQuiet, false, remove, [&](const LibraryError&) {
    return Text(u"An error occurred while removing field: ").append(asFieldName);
  });
}

bool CFileStream::FieldExists(TextView asFieldName) {
  return GetField(asFieldName).has_value();
}

std::optional<FieldPosition> CFileStream::FindField(TextView asFieldName) {
  const auto find = [&] { return msFileStream->Find(asFieldName); };
  return ReportingErrors(platform_, mbQuiet, std::optional<FieldPosition>(), find, [&](const LibraryError&) {
    return Text(u"An error occurred while finding field: ").append(asFieldName);
  });
}

std::optional<TextView> CFileStream::GetField(TextView asFieldName) {
  const auto get = [&]() -> std::optional<TextView> {
    const std::optional<FieldPosition> field = FindField(asFieldName);
    if (!field) return std::nullopt;
    return WithoutSurroundings(msFileStream->TextOf(*field));
  };
  return ReportingErrors(platform_, mbQuiet, std::optional<TextView>(), get, [&](const LibraryError& error) {
    return Text(u"An error occurred while getting field: ")
        .append(asFieldName)
        .append(u"\r\nError was: ")
        .append(error.Description());
  });
}

}  // namespace vorquill21
