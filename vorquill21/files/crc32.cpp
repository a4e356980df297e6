#include "vorquill21/files/crc32.hpp"

#include <array>
#include <cstddef>

#if defined(__x86_64__) || defined(__i386__)
#define VORQUILL21_CARRY_LESS_MULTIPLICATION __attribute__((target("pclmul")))
#include <emmintrin.h>
#include <wmmintrin.h>
#endif

namespace vorquill21 {
namespace {

constexpr std::uint32_t kPolynomial = 0xEDB88320;

/// `value` times x modulo the polynomial. Bit 31 is the coefficient of x to the power 0.
constexpr std::uint32_t TimesX(std::uint32_t value) {
  return (value >> 1) ^ ((value & 1) != 0 ? kPolynomial : 0);
}

constexpr std::size_t kSlices = 16;
using SliceTables = std::array<std::array<std::uint32_t, 256>, kSlices>;

/// Table k holds the registers that a byte leaves after k further zero bytes.
constexpr SliceTables MakeSliceTables() {
  SliceTables tables{};
  for (std::uint32_t byte = 0; byte < 256; ++byte) {
    std::uint32_t value = byte;
    for (int bit = 0; bit < 8; ++bit) value = TimesX(value);
    tables[0][byte] = value;
  }
  for (std::size_t slice = 1; slice < kSlices; ++slice) {
    for (std::size_t byte = 0; byte < 256; ++byte) {
      const std::uint32_t before = tables[slice - 1][byte];
      tables[slice][byte] = (before >> 8) ^ tables[0][before & 0xFF];
    }
  }
  return tables;
}

constexpr SliceTables kTables = MakeSliceTables();

std::uint32_t ByteAt(std::string_view bytes, std::size_t index) {
  return static_cast<unsigned char>(bytes[index]);
}

std::uint32_t WordAt(std::string_view bytes, std::size_t index) {
  return ByteAt(bytes, index) | ByteAt(bytes, index + 1) << 8 | ByteAt(bytes, index + 2) << 16 |
         ByteAt(bytes, index + 3) << 24;
}

/// What the four bytes of `word` leave when their last one is followed by `bytesAfter` others.
std::uint32_t SliceOf(std::uint32_t word, std::size_t bytesAfter) {
  return kTables[bytesAfter + 3][word & 0xFF] ^ kTables[bytesAfter + 2][word >> 8 & 0xFF] ^
         kTables[bytesAfter + 1][word >> 16 & 0xFF] ^ kTables[bytesAfter][word >> 24];
}

}  // namespace

std::uint32_t AdvanceCrc32BySlicing(std::uint32_t crcRegister, std::string_view bytes) noexcept {
  for (; bytes.size() >= kSlices; bytes.remove_prefix(kSlices)) {
    crcRegister = SliceOf(crcRegister ^ WordAt(bytes, 0), 12) ^ SliceOf(WordAt(bytes, 4), 8) ^
                  SliceOf(WordAt(bytes, 8), 4) ^ SliceOf(WordAt(bytes, 12), 0);
  }
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    crcRegister = (crcRegister >> 8) ^ kTables[0][(crcRegister ^ ByteAt(bytes, i)) & 0xFF];
  }
  return crcRegister;
}

#ifdef VORQUILL21_CARRY_LESS_MULTIPLICATION

// Folding, after V. Gopal et al., "Fast CRC Computation for Generic Polynomials Using PCLMULQDQ Instruction"
// (2009): 16 bytes may be replaced by any that are congruent to them modulo the polynomial, moved to a later
// place in the message. The last 16 bytes left are brought to a register through the tables.
namespace {

constexpr int kLaneBits = 128;
constexpr std::size_t kLaneBytes = 16;
constexpr std::size_t kLanes = 4;

/// x to the given power modulo the polynomial, placed so that the product of 64-bit halves comes out aligned:
/// the place holds another 31 powers, and the product of two reflected halves one more.
constexpr long long FoldingFactor(int power) {
  std::uint32_t value = 0x80000000;
  for (int i = 0; i < power - 32; ++i) value = TimesX(value);
  return static_cast<long long>(value) << 1;
}

/// The factors that move the two halves of 16 bytes kDistance bits towards the end of the message. The lower
/// half holds the earlier bytes, that is the higher powers.
template <int kDistance>
__m128i FoldingFactors() {
  constexpr long long kLower = FoldingFactor(kDistance + 64);
  constexpr long long kUpper = FoldingFactor(kDistance);
  return _mm_set_epi64x(kUpper, kLower);
}

VORQUILL21_CARRY_LESS_MULTIPLICATION inline __m128i Fold(__m128i lane, __m128i factors, __m128i next) {
  const __m128i lower = _mm_clmulepi64_si128(lane, factors, 0x00);
  const __m128i upper = _mm_clmulepi64_si128(lane, factors, 0x11);
  return _mm_xor_si128(next, _mm_xor_si128(lower, upper));
}

__m128i LoadLane(std::string_view bytes, std::size_t lane) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes.data() + lane * kLaneBytes));
}

}  // namespace

VORQUILL21_CARRY_LESS_MULTIPLICATION std::uint32_t AdvanceCrc32ByFolding(std::uint32_t crcRegister,
                                                                         std::string_view bytes) noexcept {
  constexpr std::size_t kStride = kLanes * kLaneBytes;
  if (bytes.size() < kStride) return AdvanceCrc32BySlicing(crcRegister, bytes);

  __m128i lanes[kLanes];
  for (std::size_t i = 0; i < kLanes; ++i) lanes[i] = LoadLane(bytes, i);
  lanes[0] = _mm_xor_si128(lanes[0], _mm_cvtsi32_si128(static_cast<int>(crcRegister)));
  bytes.remove_prefix(kStride);

  const __m128i strideFactors = FoldingFactors<kLaneBits* static_cast<int>(kLanes)>();
  for (; bytes.size() >= kStride; bytes.remove_prefix(kStride)) {
    for (std::size_t i = 0; i < kLanes; ++i) lanes[i] = Fold(lanes[i], strideFactors, LoadLane(bytes, i));
  }

  const __m128i laneFactors = FoldingFactors<kLaneBits>();
  __m128i last = lanes[0];
  for (std::size_t i = 1; i < kLanes; ++i) last = Fold(last, laneFactors, lanes[i]);
  for (; bytes.size() >= kLaneBytes; bytes.remove_prefix(kLaneBytes)) {
    last = Fold(last, laneFactors, LoadLane(bytes, 0));
  }

  std::array<char, kLaneBytes> congruent;
  _mm_storeu_si128(reinterpret_cast<__m128i*>(congruent.data()), last);
  crcRegister = AdvanceCrc32BySlicing(0, {congruent.data(), congruent.size()});
  return AdvanceCrc32BySlicing(crcRegister, bytes);
}

bool CanFoldCrc32() noexcept {
  return __builtin_cpu_supports("pclmul") != 0;
}

#else

std::uint32_t AdvanceCrc32ByFolding(std::uint32_t crcRegister, std::string_view bytes) noexcept {
  return AdvanceCrc32BySlicing(crcRegister, bytes);
}

bool CanFoldCrc32() noexcept {
  return false;
}

#endif

void Crc32::Add(std::string_view bytes) noexcept {
  register_ =
      CanFoldCrc32() ? AdvanceCrc32ByFolding(register_, bytes) : AdvanceCrc32BySlicing(register_, bytes);
}

}  // namespace vorquill21
