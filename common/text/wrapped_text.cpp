#include "common/text/wrapped_text.h"

#include <algorithm>
#include <cstddef>

#include "common/text/utf8.h"

namespace genostat::common {

namespace {

bool mayBreakBehind(char c) {
  return std::string_view("_-/\\,;").find(c) != std::string_view::npos;
}

// The bytes of `word` that fit `width` columns, at least one character with its combining marks.
std::size_t fittingPrefix(std::string_view word, int width) {
  int used = 0;
  std::size_t end = 0;
  std::size_t lastBreak = 0;
  while (end < word.size()) {
    const CodePoint point = codePointAt(word, end);
    used += codePointWidth(point.value);
    if (used > width && end > 0) break;
    end += point.size;
    if (mayBreakBehind(word[end - 1])) lastBreak = end;
  }
  return end < word.size() && lastBreak > 0 ? lastBreak : end;
}

// Calls `use` for each run of characters that are not blanks, with the blanks before it.
template <typename Use>
void forEachWord(std::string_view text, Use use) {
  std::size_t position = 0;
  while (position < text.size()) {
    const std::size_t begin = std::min(text.find_first_not_of(' ', position), text.size());
    const std::size_t end = std::min(text.find(' ', begin), text.size());
    if (begin < end) use(text.substr(position, begin - position), text.substr(begin, end - begin));
    position = end;
  }
}

}  // namespace

std::vector<std::string> wrapText(std::string_view text, int width) {
  width = std::max(width, 1);
  if (displayWidth(text) <= width) return {std::string(text)};
  std::vector<std::string> lines(1);
  int used = 0;
  forEachWord(text, [&](std::string_view blanks, std::string_view word) {
    const int gap = lines.back().empty() ? 0 : static_cast<int>(blanks.size());
    if (used + gap + displayWidth(word) <= width) {
      lines.back().append(static_cast<std::size_t>(gap), ' ').append(word);
      used += gap + displayWidth(word);
      return;
    }
    if (!lines.back().empty()) lines.emplace_back();
    while (displayWidth(word) > width) {
      const std::size_t size = fittingPrefix(word, width);
      lines.back() = word.substr(0, size);
      word.remove_prefix(size);
      if (word.empty()) break;
      lines.emplace_back();
    }
    if (!word.empty()) lines.back() = word;
    used = displayWidth(lines.back());
  });
  return lines;
}

int longestWordWidth(std::string_view text) {
  int longest = 0;
  forEachWord(text, [&](std::string_view, std::string_view word) {
    longest = std::max(longest, displayWidth(word));
  });
  return longest;
}

}  // namespace genostat::common
