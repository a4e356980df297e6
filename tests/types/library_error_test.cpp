#include "vorquill21/frame/types/library_error.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include "tests/support/for_each_shortage.hpp"

namespace vorquill21 {
namespace {

struct NumberedDescription {
  std::int32_t number;
  const char16_t* description;
};

constexpr NumberedDescription kRuntimeErrors[] = {
    {5, u"Invalid procedure call or argument"},
    {6, u"Overflow"},
    {7, u"Out of memory"},
    {9, u"Subscript out of range"},
    {11, u"Division by zero"},
    {13, u"Type mismatch"},
    {52, u"Bad file name or number"},
    {53, u"File not found"},
    {57, u"Device I/O error"},
    {61, u"Disk full"},
    {62, u"Input past end of file"},
    {67, u"Too many files"},
    {70, u"Permission denied"},
    {75, u"Path/File access error"},
    {76, u"Path not found"},
};

TEST(LibraryErrorTest, AnErrorOfTheRuntimeHasItsNumberAndStandardDescription) {
  for (const auto& [number, description] : kRuntimeErrors) {
    const LibraryError error(static_cast<RuntimeErrorNumber>(number));
    EXPECT_EQ(error.Number(), number);
    EXPECT_EQ(error.Source(), u"");
    EXPECT_EQ(error.Description(), description);
    EXPECT_EQ(error.what(), ToUtf8(description));
    EXPECT_EQ(RuntimeErrorDescription(number), description);
  }
}

TEST(LibraryErrorTest, TheNamesHaveTheirNumbers) {
  const std::int32_t numbers[] = {kInvalidProcedureCall, kOverflow,       kOutOfMemory,  kSubscriptOutOfRange,
                                  kDivisionByZero,       kTypeMismatch,   kBadFileName,  kFileNotFound,
                                  kDeviceInputOutput,    kDiskFull,       kInputPastEnd, kTooManyFiles,
                                  kPermissionDenied,     kPathFileAccess, kPathNotFound};
  ASSERT_EQ(std::size(numbers), std::size(kRuntimeErrors));
  for (std::size_t i = 0; i < std::size(numbers); ++i) EXPECT_EQ(numbers[i], kRuntimeErrors[i].number);
}

TEST(LibraryErrorTest, EveryOtherNumberHasOneDescription) {
  for (const std::int32_t number : {0, 1, 1000, -2147220991, std::numeric_limits<std::int32_t>::min()}) {
    EXPECT_EQ(RuntimeErrorDescription(number), u"Application-defined or object-defined error");
  }
}

TEST(LibraryErrorTest, AnErrorOfAClassKeepsWhatItWasGiven) {
  const LibraryError error(-2147220991, u"CLog.AddEntry", u"Größe €");
  EXPECT_EQ(error.Number(), -2147220991);
  EXPECT_EQ(error.Source(), u"CLog.AddEntry");
  EXPECT_EQ(error.Description(), u"Größe €");
  EXPECT_STREQ(error.what(),
               "Gr\xC3\xB6\xC3\x9F"
               "e \xE2\x82\xAC");
}

TEST(LibraryErrorTest, CopyingNeverThrows) {
  static_assert(std::is_nothrow_copy_constructible_v<LibraryError>);
  static_assert(std::is_nothrow_copy_assignable_v<LibraryError>);
  LibraryError copy(kOverflow);
  {
    const LibraryError error(1, u"source", u"description");
    copy = error;
  }
  EXPECT_EQ(copy.Number(), 1);
  EXPECT_STREQ(copy.what(), "description");
}

TEST(LibraryErrorTest, WithoutMemoryForSayingSoEveryErrorOfTheRuntimeIsErrorSeven) {
  for (const NumberedDescription& error : kRuntimeErrors) {
    const auto expectNumberOrErrorSeven = [&](test::MemoryShortage& shortage) {
      const std::int32_t raised =
          shortage.RaisedDuring([&] { Raise(static_cast<RuntimeErrorNumber>(error.number)); });
      EXPECT_EQ(raised, shortage.Hit() ? kOutOfMemory : error.number);
    };
    test::ForEachShortage(expectNumberOrErrorSeven, {1000});
  }
}

TEST(LibraryErrorTest, AnErrorThatWasMovedFromIsStillWhole) {
  LibraryError error(1, u"source", u"description");
  const LibraryError moved(std::move(error));
  EXPECT_EQ(moved.Number(), 1);
  EXPECT_EQ(error.Number(), 1);
  EXPECT_STREQ(error.what(), "description");
}

TEST(LibraryErrorTest, IsCaughtAsAStandardException) {
  try {
    throw LibraryError(kDiskFull);
  } catch (const std::exception& error) {
    EXPECT_STREQ(error.what(), "Disk full");
  }
}

TEST(TranslatingMemoryErrorsTest, ReturnsWhatTheOperationReturns) {
  int value = 1;
  EXPECT_EQ(TranslatingMemoryErrors([] { return 7; }), 7);
  TranslatingMemoryErrors([&]() -> int& { return value; }) = 2;
  EXPECT_EQ(value, 2);
  TranslatingMemoryErrors([&] { value = 3; });
  EXPECT_EQ(value, 3);
  const auto owned = TranslatingMemoryErrors([] { return std::make_unique<int>(4); });
  EXPECT_EQ(*owned, 4);
}

template <typename Error>
std::int32_t TranslationOf(const Error& error) {
  return test::RaisedNumber([&] { TranslatingMemoryErrors([&] { throw error; }); });
}

TEST(TranslatingMemoryErrorsTest, MemoryThatCannotBeHadIsErrorSeven) {
  EXPECT_EQ(TranslationOf(std::bad_alloc()), kOutOfMemory);
  EXPECT_EQ(TranslationOf(std::bad_array_new_length()), kOutOfMemory);
  EXPECT_EQ(TranslationOf(std::length_error("length")), kOutOfMemory);
}

TEST(TranslatingMemoryErrorsTest, OtherErrorsPass) {
  EXPECT_EQ(TranslationOf(LibraryError(kDiskFull)), kDiskFull);
  EXPECT_THROW(TranslatingMemoryErrors([] { throw std::logic_error("logic"); }), std::logic_error);
}

}  // namespace
}  // namespace vorquill21
