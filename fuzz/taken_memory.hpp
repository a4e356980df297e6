#pragma once

#include <cstddef>
#include <cstdlib>
#include <new>

// Counts what a fuzz target takes from the heap. It replaces the operators of the whole program, so that one
// source of it includes this.

namespace vorquill21::test {

/// All bytes ever taken, given back or not.
inline std::size_t takenBytes = 0;

inline void* Take(std::size_t size) noexcept {
  takenBytes += size;
  return std::malloc(size > 0 ? size : 1);
}

inline void* TakeOrThrow(std::size_t size) {
  if (void* const block = Take(size)) return block;
  throw std::bad_alloc();
}

/// How many bytes `operation` takes.
template <typename Operation>
std::size_t BytesTakenBy(Operation operation) {
  const std::size_t before = takenBytes;
  operation();
  return takenBytes - before;
}

}  // namespace vorquill21::test

void* operator new(std::size_t size) {
  return vorquill21::test::TakeOrThrow(size);
}
void* operator new[](std::size_t size) {
  return vorquill21::test::TakeOrThrow(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return vorquill21::test::Take(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return vorquill21::test::Take(size);
}
void operator delete(void* block) noexcept {
  std::free(block);
}
void operator delete[](void* block) noexcept {
  std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
  std::free(block);
}
void operator delete[](void* block, std::size_t) noexcept {
  std::free(block);
}
