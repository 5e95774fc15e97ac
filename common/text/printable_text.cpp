#include "common/text/printable_text.h"

#include <cstddef>

#include "common/text/utf8.h"

namespace genostat::common {

namespace {

std::string hexEscape(char32_t value) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string text = value < 0x100 ? "\\x" : "\\u";
  for (int shift = value < 0x100 ? 4 : 12; shift >= 0; shift -= 4) {
    text += kDigits[(value >> shift) & 0xFU];
  }
  return text;
}

// C0, C1, line and paragraph separators, and the marks that turn the direction of writing.
bool steersTerminal(char32_t value) {
  return value < 0x20 || (value >= 0x7F && value < 0xA0) || (value >= 0x2028 && value <= 0x202E) ||
         (value >= 0x2066 && value <= 0x2069) || value == 0x200E || value == 0x200F;
}

std::string visible(char32_t value) {
  switch (value) {
    case U'\t':
      return "\\t";
    case U'\n':
      return "\\n";
    case U'\r':
      return "\\r";
    default:
      return hexEscape(value);
  }
}

}  // namespace

std::string printableText(std::string_view text, LineBreaks lineBreaks) {
  std::string printable;
  printable.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) {
    const CodePoint point = codePointAt(text, i);
    const bool kept = lineBreaks == LineBreaks::Keep && (point.value == U'\n' || point.value == U'\t');
    if (!point.valid) {
      printable += "\xEF\xBF\xBD";
    } else if (steersTerminal(point.value) && !kept) {
      printable += visible(point.value);
    } else {
      printable += text.substr(i, point.size);
    }
    i += point.size;
  }
  return printable;
}

std::string quoteForMessage(std::string_view text) {
  constexpr std::size_t kMost = 60;
  std::size_t end = 0;
  for (std::size_t count = 0; end < text.size() && count < kMost; ++count) {
    end += codePointAt(text, end).size;
  }
  return '"' + printableText(text.substr(0, end)) + (end < text.size() ? "\xE2\x80\xA6\"" : "\"");
}

}  // namespace genostat::common
