#include "vorquill21/platform/code_page.hpp"

#include <algorithm>
#include <cstdint>
#include <numeric>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace vorquill21 {
namespace {

constexpr std::size_t kStep = 16;
constexpr std::size_t kBlock = 4096;
constexpr std::size_t kAsciiCount = 128;
constexpr std::size_t kUnitCount = 0x10000;

#if defined(__SSE2__)

/// Widens 16 bytes when all of them are ASCII.
bool WidenAscii(const char* bytes, char16_t* units) noexcept {
  const __m128i step = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
  if (_mm_movemask_epi8(step) != 0) return false;
  const __m128i zero = _mm_setzero_si128();
  _mm_storeu_si128(reinterpret_cast<__m128i*>(units), _mm_unpacklo_epi8(step, zero));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(units + kStep / 2), _mm_unpackhi_epi8(step, zero));
  return true;
}

/// Narrows 16 units when all of them are ASCII.
bool NarrowAscii(const char16_t* units, char* bytes) noexcept {
  const __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i*>(units));
  const __m128i high = _mm_loadu_si128(reinterpret_cast<const __m128i*>(units + kStep / 2));
  const __m128i beyondAscii = _mm_and_si128(_mm_or_si128(low, high), _mm_set1_epi16(-0x80));
  if (_mm_movemask_epi8(_mm_cmpeq_epi16(beyondAscii, _mm_setzero_si128())) != 0xFFFF) return false;
  _mm_storeu_si128(reinterpret_cast<__m128i*>(bytes), _mm_packus_epi16(low, high));
  return true;
}

#else

bool WidenAscii(const char*, char16_t*) noexcept {
  return false;
}

bool NarrowAscii(const char16_t*, char*) noexcept {
  return false;
}

#endif

/// Converts `in` step by step, a block at a time, so that the result grows without being cleared first.
/// `ascii` converts a whole step or refuses it, `single` converts one character.
template <typename In, typename Out, typename Ascii, typename Single>
void AppendConverted(std::basic_string_view<In> in, std::basic_string<Out>& out, Ascii ascii, Single single) {
  out.reserve(out.size() + in.size());
  std::array<Out, kBlock> block;
  while (!in.empty()) {
    const std::size_t size = std::min(in.size(), kBlock);
    for (std::size_t at = 0; at < size; at += kStep) {
      const std::size_t end = std::min(at + kStep, size);
      if (end - at == kStep && ascii(in.data() + at, block.data() + at)) continue;
      for (std::size_t i = at; i < end; ++i) block[i] = single(in[i]);
    }
    out.append(block.data(), size);
    in.remove_prefix(size);
  }
}

}  // namespace

CodePageUnits Windows1252Units() noexcept {
  constexpr std::size_t kFirst = 0x80;
  constexpr std::array<char16_t, 32> kBetweenAsciiAndLatin1 = {
      0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
      0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
      0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};
  CodePageUnits units;
  std::iota(units.begin(), units.end(), u'\0');
  std::ranges::copy(kBetweenAsciiAndLatin1, units.begin() + kFirst);
  return units;
}

CodePage::CodePage(const CodePageUnits& units) : unitOfByte_(units), byteOfUnit_(kUnitCount, '?') {
  for (std::size_t byte = units.size(); byte-- > 0;) byteOfUnit_[units[byte]] = static_cast<char>(byte);
  holdsAscii_ = true;
  for (std::size_t byte = 0; byte < kAsciiCount; ++byte) holdsAscii_ = holdsAscii_ && units[byte] == byte;
}

void CodePage::AppendText(std::string_view bytes, Text& text) const {
  AppendConverted(
      bytes, text, [this](const char* in, char16_t* out) { return holdsAscii_ && WidenAscii(in, out); },
      [this](char byte) { return unitOfByte_[static_cast<unsigned char>(byte)]; });
}

void CodePage::AppendBytes(TextView text, std::string& bytes) const {
  AppendConverted(
      text, bytes, [this](const char16_t* in, char* out) { return holdsAscii_ && NarrowAscii(in, out); },
      [this](char16_t unit) { return byteOfUnit_[unit]; });
}

}  // namespace vorquill21
