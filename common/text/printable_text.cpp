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

constexpr std::string_view kEllipsis = "\xE2\x80\xA6";

// A character as it can be shown, and how many bytes of the text it takes.
struct Shown {
  std::string text;
  std::size_t size;
};

Shown characterAt(std::string_view text, std::size_t position, LineBreaks lineBreaks) {
  const CodePoint point = codePointAt(text, position);
  const bool kept = lineBreaks == LineBreaks::Keep && (point.value == U'\n' || point.value == U'\t');
  if (!point.valid) return {"\xEF\xBF\xBD", point.size};
  if (steersTerminal(point.value) && !kept) return {visible(point.value), point.size};
  return {std::string(text.substr(position, point.size)), point.size};
}

}  // namespace

std::string printableText(std::string_view text, LineBreaks lineBreaks) {
  std::string printable;
  printable.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) {
    const Shown shown = characterAt(text, i, lineBreaks);
    printable += shown.text;
    i += shown.size;
  }
  return printable;
}

std::string quoteForMessage(std::string_view text) {
  constexpr std::size_t kMost = 60;
  std::size_t end = 0;
  for (std::size_t count = 0; end < text.size() && count < kMost; ++count) {
    end += codePointAt(text, end).size;
  }
  std::string quoted = '"' + printableText(text.substr(0, end));
  if (end < text.size()) quoted += kEllipsis;
  return quoted + '"';
}

std::string shownName(std::string_view name) {
  constexpr std::size_t kMostBytes = 1024;
  std::string shown;
  std::size_t beforeEllipsis = 0;
  for (std::size_t i = 0; i < name.size();) {
    const Shown next = characterAt(name, i, LineBreaks::Escape);
    if (shown.size() + next.text.size() > kMostBytes)
      return shown.substr(0, beforeEllipsis).append(kEllipsis);
    shown += next.text;
    i += next.size;
    if (shown.size() + kEllipsis.size() <= kMostBytes) beforeEllipsis = shown.size();
  }
  return shown;
}

std::string quotedName(std::string_view name) {
  return '"' + shownName(name) + '"';
}

}  // namespace genostat::common
