#include "common/text/utf8.h"

#include <algorithm>
#include <array>
#include <span>

namespace genostat::common {

namespace {

struct Range {
  char32_t first;
  char32_t last;
};

// Ascending. Blocks rather than single characters: a column too many in a rare script is
// harmless, a table of all scripts is not worth its upkeep.
constexpr std::array kZeroWidth = {
    Range{0x0300, 0x036F},   Range{0x0483, 0x0489}, Range{0x0591, 0x05BD}, Range{0x0610, 0x061A},
    Range{0x064B, 0x065F},   Range{0x06D6, 0x06DC}, Range{0x0900, 0x0902}, Range{0x093C, 0x093C},
    Range{0x0941, 0x0948},   Range{0x094D, 0x094D}, Range{0x0E31, 0x0E31}, Range{0x0E34, 0x0E3A},
    Range{0x0E47, 0x0E4E},   Range{0x1AB0, 0x1AFF}, Range{0x1DC0, 0x1DFF}, Range{0x200B, 0x200F},
    Range{0x202A, 0x202E},   Range{0x2060, 0x2069}, Range{0x20D0, 0x20FF}, Range{0x3099, 0x309A},
    Range{0xFE00, 0xFE0F},   Range{0xFE20, 0xFE2F}, Range{0xFEFF, 0xFEFF}, Range{0x1F3FB, 0x1F3FF},
    Range{0xE0100, 0xE01EF},
};

constexpr std::array kWide = {
    Range{0x1100, 0x115F},   Range{0x231A, 0x231B},   Range{0x23E9, 0x23EC},   Range{0x2E80, 0x303E},
    Range{0x3041, 0x33FF},   Range{0x3400, 0x4DBF},   Range{0x4E00, 0x9FFF},   Range{0xA000, 0xA4CF},
    Range{0xA960, 0xA97F},   Range{0xAC00, 0xD7A3},   Range{0xF900, 0xFAFF},   Range{0xFE30, 0xFE6F},
    Range{0xFF00, 0xFF60},   Range{0xFFE0, 0xFFE6},   Range{0x1F300, 0x1F64F}, Range{0x1F680, 0x1F6FF},
    Range{0x1F900, 0x1FAFF}, Range{0x20000, 0x3FFFD},
};

bool contains(std::span<const Range> ranges, char32_t value) {
  const auto range = std::ranges::lower_bound(ranges, value, {}, &Range::last);
  return range != ranges.end() && value >= range->first;
}

}  // namespace

CodePoint codePointAt(std::string_view text, std::size_t position) {
  const CodePoint invalid = {0xFFFD, 1, false};
  const auto lead = static_cast<unsigned char>(text[position]);
  if (lead < 0x80) return {lead, 1};
  // The least value of each length keeps overlong forms out.
  const std::size_t size = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  const char32_t least = size == 4 ? 0x10000 : size == 3 ? 0x800 : 0x80;
  if (lead < 0xC2 || lead > 0xF4 || text.size() - position < size) return invalid;
  char32_t value = lead & (0xFFU >> (size + 1));
  for (std::size_t i = 1; i < size; ++i) {
    const auto byte = static_cast<unsigned char>(text[position + i]);
    if (!continuesCharacter(text[position + i])) return invalid;
    value = value << 6 | (byte & 0x3FU);
  }
  const bool surrogate = value >= 0xD800 && value <= 0xDFFF;
  if (value < least || value > 0x10FFFF || surrogate) return invalid;
  return {value, size};
}

std::size_t characterBefore(std::string_view text, std::size_t position) {
  do {
    --position;
  } while (position > 0 && continuesCharacter(text[position]));
  return position;
}

std::string_view cutToBytes(std::string_view text, std::size_t bytes) {
  if (text.size() <= bytes) return text;
  while (bytes > 0 && continuesCharacter(text[bytes])) {
    --bytes;
  }
  return text.substr(0, bytes);
}

std::string_view cutToWidth(std::string_view text, int width) {
  std::size_t end = 0;
  while (end < text.size()) {
    const CodePoint point = codePointAt(text, end);
    width -= codePointWidth(point.value);
    if (width < 0) break;
    end += point.size;
  }
  return text.substr(0, end);
}

bool isValidUtf8(std::string_view text) {
  for (std::size_t i = 0; i < text.size();) {
    const CodePoint point = codePointAt(text, i);
    if (!point.valid) return false;
    i += point.size;
  }
  return true;
}

std::string toValidUtf8(std::string_view text) {
  std::string valid;
  valid.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) {
    const CodePoint point = codePointAt(text, i);
    valid += point.valid ? text.substr(i, point.size) : std::string_view("\xEF\xBF\xBD");
    i += point.size;
  }
  return valid;
}

int codePointWidth(char32_t codePoint) {
  if (codePoint < 0x300) return 1;
  if (contains(kZeroWidth, codePoint)) return 0;
  return contains(kWide, codePoint) ? 2 : 1;
}

int displayWidth(std::string_view text) {
  int width = 0;
  for (std::size_t i = 0; i < text.size();) {
    const CodePoint point = codePointAt(text, i);
    width += codePointWidth(point.value);
    i += point.size;
  }
  return width;
}

}  // namespace genostat::common
