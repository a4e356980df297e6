#include "tests/support/replaced_new.hpp"

#include <cstdlib>
#include <new>

namespace vorquill21::test {
namespace {

thread_local MemoryShortage* current = nullptr;
thread_local std::size_t askedBytes = 0;

void* Allocate(std::size_t size) noexcept {
  askedBytes += size;
  if (current != nullptr && current->NextAllocationFails()) return nullptr;
  return std::malloc(size > 0 ? size : 1);
}

void* AllocateOrThrow(std::size_t size) {
  if (void* const memory = Allocate(size)) return memory;
  throw std::bad_alloc();
}

}  // namespace

std::size_t AskedBytes() noexcept {
  return askedBytes;
}

bool MemoryShortage::NextAllocationFails() noexcept {
  if (failures_ == 0) return false;
  if (allocationsBefore_ > 0) {
    --allocationsBefore_;
    return false;
  }
  --failures_;
  isHit_ = true;
  return true;
}

MemoryShortage::Beginning::Beginning(MemoryShortage& shortage) noexcept {
  current = &shortage;
}

MemoryShortage::Beginning::~Beginning() {
  current = nullptr;
}

}  // namespace vorquill21::test

using vorquill21::test::Allocate;
using vorquill21::test::AllocateOrThrow;

void* operator new(std::size_t size) {
  return AllocateOrThrow(size);
}
void* operator new[](std::size_t size) {
  return AllocateOrThrow(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return Allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return Allocate(size);
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete[](void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept {
  std::free(memory);
}
