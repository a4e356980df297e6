#include "tests/support/replaced_new.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <new>

#include "tests/support/for_each_shortage.hpp"

// Tests that look at memory pass when nothing counts or fails what is allocated. The operators are called by
// their names here, as the compiler may leave out what a new-expression allocates.

namespace vorquill21::test {
namespace {

bool IsAllocatedInSilence(std::size_t size) {
  void* const memory = ::operator new(size, std::nothrow);
  const bool isAllocated = memory != nullptr;
  ::operator delete(memory);
  return isAllocated;
}

bool AreAllocated() {
  if (!IsAllocatedInSilence(100)) return false;
  try {
    ::operator delete(::operator new(20));
    ::operator delete[](::operator new[](3));
    return true;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

TEST(ReplacedNewTest, EachAllocationOfACallFailsInTurn) {
  int attempts = 0;
  const auto attempt = [&](MemoryShortage& shortage) {
    ++attempts;
    const bool areAllocated = shortage.During(AreAllocated);
    EXPECT_EQ(areAllocated, !shortage.Hit());
    EXPECT_TRUE(AreAllocated()) << "the shortage is over";
  };
  EXPECT_EQ(ForEachShortage(attempt, {1}), 3);
  EXPECT_EQ(attempts, 4);
  EXPECT_EQ(ForEachShortage(attempt, {1, 2, 1000}), 9);
}

TEST(ReplacedNewTest, AsManyAllocationsFailInARowAsAreToFail) {
  std::array<bool, 5> areAllocated{};
  const auto call = [&] { std::ranges::generate(areAllocated, [] { return IsAllocatedInSilence(1); }); };
  MemoryShortage(2, 3).During(call);
  EXPECT_EQ(areAllocated, (std::array{true, false, false, false, true}));
}

TEST(ReplacedNewTest, AllBytesAreCountedGivenBackOrNot) {
  EXPECT_EQ(BytesAskedBy(AreAllocated), 123u);
  EXPECT_EQ(BytesAskedBy([] {}), 0u);
}

}  // namespace
}  // namespace vorquill21::test
