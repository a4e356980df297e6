#pragma once

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "tests/support/fake_platform.hpp"
#include "vorquill21/filestream/file_stream.hpp"
#include "vorquill21/frame/types/number_text.hpp"

namespace vorquill21::test {

inline BoundedArray<Variant> ArrayOf(std::vector<Variant> elements, std::int32_t lower = 0) {
  return BoundedArray<Variant>(std::move(elements), lower);
}

inline BoundedArray<Variant> NoVersions() {
  return BoundedArray<Variant>::Empty();
}

/// A two-dimensional array from (0, 0) with the given rows.
template <typename T>
BoundedArray<T> TableOf(const std::vector<std::vector<T>>& rows) {
  BoundedArray<T> table({0, static_cast<std::int32_t>(rows.size()) - 1},
                        {0, static_cast<std::int32_t>(rows.front().size()) - 1});
  auto cell = table.Elements().begin();
  for (const std::vector<T>& row : rows) cell = std::copy(row.begin(), row.end(), cell);
  return table;
}

/// Number, source and description of the error that `operation` raises; number 0 when it raises none.
struct RaisedError {
  std::int32_t number = 0;
  Text source;
  Text description;
  friend bool operator==(const RaisedError&, const RaisedError&) = default;
};

template <typename Operation>
RaisedError ErrorOf(Operation operation) {
  try {
    operation();
    return {};
  } catch (const LibraryError& error) {
    return {error.Number(), error.Source(), error.Description()};
  }
}

/// A fake platform whose numbers have the given decimal separator.
struct PlatformWithSeparator : FakePlatform {
  explicit PlatformWithSeparator(char16_t separator) { locale.decimalSeparator = separator; }
};

/// Tests that hold under a decimal point and under a decimal comma, which is the test's parameter.
class WithEachSeparator : public ::testing::TestWithParam<char16_t> {
 protected:
  Text Separator() const { return Text(1, GetParam()); }
  Text TextOf(double number) const { return NumberToText(number, GetParam()); }

  /// What `numbers` with decimal points are in the notation of the user.
  Text Localised(Text numbers) const {
    std::replace(numbers.begin(), numbers.end(), u'.', GetParam());
    return numbers;
  }

  void ExpectMessages(const std::vector<Text>& texts) {
    std::vector<ShownMessage> expected;
    for (const Text& text : texts) expected.push_back(ErrorMessage(text));
    EXPECT_EQ(fake.desktop.messages, expected);
    fake.desktop.messages.clear();
  }

  PlatformWithSeparator fake{GetParam()};
  CFileStream stream{fake.platform};
};

inline std::string SeparatorName(const ::testing::TestParamInfo<char16_t>& info) {
  return info.param == u'.' ? "Point" : "Comma";
}

#define VORQUILL21_WITH_EACH_SEPARATOR(suite) \
  INSTANTIATE_TEST_SUITE_P(Decimal, suite, ::testing::Values(u'.', u','), ::vorquill21::test::SeparatorName)

}  // namespace vorquill21::test
