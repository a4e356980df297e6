#include "tests/filestream/memory_shortage.hpp"

#include <cstdlib>
#include <new>

namespace vorquill21::test {
namespace {

thread_local int allocationsBefore = 0;
thread_local int failures = 0;
thread_local bool isHit = false;

thread_local bool isCounting = false;
thread_local std::size_t askedBytes = 0;

bool NextAllocationFails(std::size_t size) {
  if (isCounting) askedBytes += size;
  if (failures == 0) return false;
  if (allocationsBefore > 0) {
    --allocationsBefore;
    return false;
  }
  --failures;
  isHit = true;
  return true;
}

}  // namespace

MemoryShortage::MemoryShortage(int first, int count) {
  allocationsBefore = first - 1;
  failures = count;
  isHit = false;
}

MemoryShortage::~MemoryShortage() {
  failures = 0;
}

bool MemoryShortage::Hit() {
  return isHit;
}

MemoryUse::MemoryUse() {
  askedBytes = 0;
  isCounting = true;
}

MemoryUse::~MemoryUse() {
  isCounting = false;
}

std::size_t MemoryUse::AskedBytes() {
  return askedBytes;
}

}  // namespace vorquill21::test

void* operator new(std::size_t size) {
  if (vorquill21::test::NextAllocationFails(size)) throw std::bad_alloc();
  if (void* memory = std::malloc(size)) return memory;
  throw std::bad_alloc();
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return vorquill21::test::NextAllocationFails(size) ? nullptr : std::malloc(size);
}

void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}

void operator delete(void* memory, const std::nothrow_t&) noexcept {
  std::free(memory);
}
