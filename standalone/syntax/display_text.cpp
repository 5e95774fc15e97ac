#include "standalone/syntax/display_text.h"

#include <algorithm>
#include <array>

namespace genostat::standalone {

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

struct CodeRange {
  char32_t first;
  char32_t last;
};

// Marks that share the cell of the character before them, and invisible joiners.
constexpr std::array<CodeRange, 6> kZeroWidth = {{
    {0x0300, 0x036F},
    {0x1AB0, 0x1AFF},
    {0x1DC0, 0x1DFF},
    {0x200B, 0x200D},
    {0x20D0, 0x20FF},
    {0xFE00, 0xFE0F},
}};

// East Asian wide and full-width characters, and pictographs.
constexpr std::array<CodeRange, 9> kWide = {{
    {0x1100, 0x115F},
    {0x2E80, 0x303E},
    {0x3041, 0xA4CF},
    {0xAC00, 0xD7A3},
    {0xF900, 0xFAFF},
    {0xFE30, 0xFE6F},
    {0xFF00, 0xFF60},
    {0x1F300, 0x1FAFF},
    {0x20000, 0x3FFFD},
}};

// Control characters, and the marks that turn the direction of writing around and so could
// make a line look like another.
constexpr std::array<CodeRange, 5> kUnprintable = {{
    {0x00, 0x1F},
    {0x7F, 0x9F},
    {0x200E, 0x200F},
    {0x2028, 0x202E},
    {0x2066, 0x2069},
}};

template <std::size_t Size>
bool isIn(const std::array<CodeRange, Size>& ranges, char32_t code) {
  return std::any_of(ranges.begin(), ranges.end(),
                     [code](const CodeRange& range) { return code >= range.first && code <= range.last; });
}

unsigned byteAt(std::string_view text, std::size_t position) {
  return static_cast<unsigned char>(text[position]);
}

// Length in bytes of the well-formed character at `position`, and its code point; length 0 otherwise.
struct Decoded {
  std::size_t length = 0;
  char32_t code = 0;
};

Decoded decode(std::string_view text, std::size_t position) {
  const unsigned lead = byteAt(text, position);
  if (lead < 0x80) return {1, lead};
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() - position < length) return {};
  char32_t code = lead & (0x7FU >> length);
  for (std::size_t i = 1; i < length; ++i) {
    const unsigned byte = byteAt(text, position + i);
    if ((byte & 0xC0U) != 0x80U) return {};
    code = (code << 6U) | (byte & 0x3FU);
  }
  constexpr std::array<char32_t, 5> kSmallest = {0, 0, 0x80, 0x800, 0x10000};
  const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
  if (code < kSmallest[length] || code > 0x10FFFF || surrogate) return {};
  return {length, code};
}

}  // namespace

DisplayChar displayCharAt(std::string_view text, std::size_t position) {
  const Decoded decoded = decode(text, position);
  if (decoded.length == 0) return {kReplacement, 1, 1};
  if (decoded.code != '\t' && isIn(kUnprintable, decoded.code)) return {kReplacement, decoded.length, 1};
  const std::size_t columns = isIn(kZeroWidth, decoded.code) ? 0 : isIn(kWide, decoded.code) ? 2 : 1;
  return {text.substr(position, decoded.length), decoded.length, columns};
}

std::size_t countCharacters(std::string_view text) {
  std::size_t count = 0;
  for (std::size_t position = 0; position < text.size(); ++count) {
    position += std::max<std::size_t>(decode(text, position).length, 1);
  }
  return count;
}

std::string displayText(std::string_view text) {
  std::string shown;
  shown.reserve(text.size());
  for (std::size_t position = 0; position < text.size();) {
    const DisplayChar c = displayCharAt(text, position);
    shown += text[position] == '\n' ? std::string_view("\n") : c.shown;
    position += c.length;
  }
  return shown;
}

}  // namespace genostat::standalone
