#pragma once

#include <cstdint>
#include <string_view>

namespace vorquill21 {

/// The CRC-32 of bytes that arrive in pieces: reflected form, polynomial EDB88320 hexadecimal, register
/// preset to FFFFFFFF and inverted at the end. The pieces may be cut anywhere.
class Crc32 {
 public:
  void Add(std::string_view bytes) noexcept;

  /// The checksum of all bytes added so far; 0 when there are none.
  std::uint32_t Value() const noexcept { return ~register_; }

 private:
  std::uint32_t register_ = 0xFFFFFFFF;
};

// The two ways to advance the CRC register over bytes. They give the same register for every input.

/// Sixteen bytes a step through tables; runs everywhere.
std::uint32_t AdvanceCrc32BySlicing(std::uint32_t crcRegister, std::string_view bytes) noexcept;

/// Sixty-four bytes a step by carry-less multiplication; only to be called where CanFoldCrc32().
std::uint32_t AdvanceCrc32ByFolding(std::uint32_t crcRegister, std::string_view bytes) noexcept;

/// True when this processor has the carry-less multiplication.
bool CanFoldCrc32() noexcept;

}  // namespace vorquill21
