// The quick way through numbers of at most 16 digits without an exponent, which nearly all numbers
// of data files are. Their digits make an integer that a double holds exactly, as it does the power
// of ten, and the one division between the two rounds correctly (W. D. Clinger, "How to read
// floating point numbers accurately", PLDI 1990). The digits are taken eight at a time, as the
// bytes of a 64-bit word: D. Lemire, "Number parsing at a gigabyte per second", Software: Practice
// and Experience 51 (2021) 1700-1727. The decimal sign leaves its word by a shift of the bytes
// before it. All of it is inlined into
// the loop over a column's values, so that constants stay in registers.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "standalone/data/number_text.h"

namespace genostat::standalone {

inline constexpr std::array<double, 16> kExactPowers = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                        1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
inline constexpr std::array<double, 2> kSigns = {1, -1};

inline constexpr std::size_t kDigitsPerWord = 8;
static_assert(kNumberPadding >= kDigitsPerWord);
static_assert(std::endian::native == std::endian::little, "a text's first byte is its word's lowest");

// Digits as numbers, the last one in the highest byte, as an integer.
[[gnu::always_inline]] inline std::uint64_t joinDigits(std::uint64_t digits) {
  constexpr std::uint64_t kPairs = 0x000000FF000000FF;
  constexpr std::uint64_t kFirst = 100 + (std::uint64_t{1'000'000} << 32);
  constexpr std::uint64_t kSecond = 1 + (std::uint64_t{10'000} << 32);
  digits = digits * 10 + (digits >> 8);
  return ((digits & kPairs) * kFirst + ((digits >> 16) & kPairs) * kSecond) >> 32;
}

// One to eight characters: digits and perhaps one decimal sign.
struct WordOfDigits {
  std::uint64_t value;
  int behind;  // digits after the decimal sign, or one of these two
  static constexpr int kNoSign = -1;
  static constexpr int kOther = -2;  // another character stands among them
};

[[gnu::always_inline]] inline WordOfDigits parseWord(const char* text, std::size_t length, char decimal) {
  constexpr std::uint64_t kInEveryByte = 0x0101010101010101;
  std::uint64_t word = 0;
  std::memcpy(&word, text, kDigitsPerWord);
  word = (word ^ kInEveryByte * '0') << (8 * (kDigitsPerWord - length));
  const std::uint64_t others =
      (((word & kInEveryByte * 0x7F) + kInEveryByte * (0x7F - 9)) | word) & kInEveryByte * 0x80;
  if (others == 0) return {joinDigits(word), WordOfDigits::kNoSign};
  const int bit = std::countr_zero(others) - 7;
  const bool isSign = static_cast<unsigned char>(word >> bit) == (static_cast<unsigned char>(decimal) ^ '0');
  if (!isSign || (others & (others - 1)) != 0) return {0, WordOfDigits::kOther};
  const std::uint64_t before = word & ~(~std::uint64_t{0} << bit);
  const std::uint64_t behind = word & (~std::uint64_t{0xFF} << bit);
  return {joinDigits(behind | before << 8), 7 - bit / 8};
}

// As parsePaddedNumber; no number also where only the general way can decide.
[[gnu::always_inline]] inline ParsedNumber parseShortNumber(std::string_view text, char decimal) {
  constexpr std::uint64_t kExact = std::uint64_t{1} << 53;
  if (text.empty()) return {};
  // Signs come without a pattern, so no branch should depend on them.
  const std::size_t signs = text.front() == '-';
  text = {text.data() + signs, text.size() - signs};
  if (text.empty() || text.size() > 2 * kDigitsPerWord) return {};
  const bool isLong = text.size() > kDigitsPerWord;
  const std::size_t headLength = isLong ? text.size() - kDigitsPerWord : text.size();
  const WordOfDigits head = parseWord(text.data(), headLength, decimal);
  if (head.behind == WordOfDigits::kOther) return {};
  std::uint64_t digits = head.value;
  int behind = head.behind;
  if (isLong) {
    const WordOfDigits tail = parseWord(text.data() + headLength, kDigitsPerWord, decimal);
    const bool signInTail = tail.behind >= 0;
    if (tail.behind == WordOfDigits::kOther || (signInTail && head.behind >= 0)) return {};
    digits = digits * (signInTail ? 10'000'000 : 100'000'000) + tail.value;
    behind = signInTail ? tail.behind : head.behind >= 0 ? head.behind + 8 : head.behind;
    if (digits > kExact) return {};
  } else if (text.size() == 1 && behind >= 0) {
    return {};
  }
  const int decimals = std::max(behind, 0);
  const double value = static_cast<double>(static_cast<std::int64_t>(digits)) /
                       kExactPowers[static_cast<std::size_t>(decimals)];
  return {value * kSigns[signs], decimals};
}

}  // namespace genostat::standalone
