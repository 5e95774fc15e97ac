#include "standalone/syntax/diagnostic.h"

#include <algorithm>

#include "common/text/printable_text.h"
#include "common/text/utf8.h"
#include "standalone/language/translation.h"

namespace genostat::standalone {

namespace {

constexpr std::string_view kIndent = "  ";
constexpr std::string_view kEllipsis = "\xE2\x80\xA6";

// How much of a long line is shown at most: characters before the place, and in all.
constexpr std::size_t kCharactersBefore = 60;
constexpr std::size_t kCharactersShown = 100;
// Beside the characters of a line: the indent, and an ellipsis at either end.
constexpr std::size_t kColumnsAround = 4;
constexpr std::size_t kLeastColumns = 20;

struct Line {
  std::size_t begin;
  std::size_t end;
};

Line lineAround(std::string_view text, std::size_t position) {
  std::size_t begin = position == 0 ? std::string_view::npos : text.rfind('\n', position - 1);
  begin = begin == std::string_view::npos ? 0 : begin + 1;
  if (begin == 0 && text.starts_with(common::kByteOrderMark))
    begin = std::min(common::kByteOrderMark.size(), position);
  std::size_t end = std::min(text.find('\n', position), text.size());
  if (end > begin && text[end - 1] == '\r') --end;
  return {begin, end};
}

std::size_t countLineFeeds(std::string_view text) {
  return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

std::size_t countCharacters(std::string_view text) {
  std::size_t count = 0;
  for (std::size_t position = 0; position < text.size(); ++count)
    position += common::codePointAt(text, position).size;
  return count;
}

// A character of a line as it is shown.
std::string shownCharacter(std::string_view text, std::size_t position) {
  return common::printableText(text.substr(position, common::codePointAt(text, position).size),
                               common::LineBreaks::Keep);
}

std::size_t columnsOf(std::string_view shown) {
  return static_cast<std::size_t>(common::displayWidth(shown));
}

// The columns of a text, as far as it is ever shown, or `most` when they are more.
std::size_t columnsUpTo(std::string_view text, std::size_t most) {
  std::size_t columns = 0;
  for (std::size_t count = 0; !text.empty() && columns < most && count < kCharactersShown; ++count) {
    columns += columnsOf(shownCharacter(text, 0));
    text.remove_prefix(common::codePointAt(text, 0).size);
  }
  return std::min(columns, most);
}

// Where the shown part begins: at most so many characters, and columns, before `position`.
std::size_t shownBegin(std::string_view text, std::size_t lineBegin, std::size_t position,
                       std::size_t characters, std::size_t columns) {
  for (std::size_t i = 0; i < characters && position > lineBegin; ++i) {
    const std::size_t before = std::max(common::characterBefore(text, position), lineBegin);
    const std::size_t taken = columnsOf(shownCharacter(text.substr(0, position), before));
    if (taken > columns) break;
    columns -= taken;
    position = before;
  }
  return position;
}

// The line and, below it, the caret with a tail as long as the range. What stands before the
// caret is copied as blanks of the same width and as tabs, so that any tab stops will do.
std::string excerpt(std::string_view text, const Line& line, std::size_t begin, std::size_t end,
                    std::size_t columns) {
  const std::size_t space = std::max(columns, kLeastColumns) - kColumnsAround;
  const std::string_view whole = text.substr(0, line.end);
  // The place and what follows get at most two fifths.
  const std::size_t behind = columnsUpTo(whole.substr(std::min(begin, line.end)), space - space / 5 * 3);
  std::size_t position = shownBegin(text, line.begin, begin, kCharactersBefore, space - behind);
  std::string shown(kIndent);
  std::string carets(kIndent);
  if (position > line.begin) {
    shown += kEllipsis;
    carets += ' ';
  }
  std::size_t caret = carets.size();
  std::size_t used = 0;
  for (std::size_t count = 0; position < line.end && count < kCharactersShown; ++count) {
    const std::string character = shownCharacter(whole, position);
    const std::size_t taken = columnsOf(character);
    used += taken;
    if (used > space) break;
    shown += character;
    if (position < begin) {
      character == "\t" ? carets += '\t' : carets.append(taken, ' ');
      caret = carets.size();
    } else if (position < end) {
      carets.append(taken, '~');
    }
    position += common::codePointAt(whole, position).size;
  }
  if (position < line.end) shown += kEllipsis;
  if (caret == carets.size()) carets += '^';
  carets[caret] = '^';
  return shown + "\n" + carets;
}

}  // namespace

DiagnosticParts describeDiagnostic(const Diagnostic& diagnostic, std::size_t columns) {
  DiagnosticParts parts;
  if (diagnostic.range && diagnostic.range->source) {
    const SourceText& source = *diagnostic.range->source;
    const std::string_view text = source.text;
    const std::size_t begin = std::min(diagnostic.range->begin, text.size());
    const Line line = lineAround(text, begin);
    const std::size_t lineNumber =
        diagnostic.range->line ? diagnostic.range->line : countLineFeeds(text.substr(0, begin)) + 1;
    const std::size_t column = countCharacters(text.substr(line.begin, begin - line.begin)) + 1;
    parts.message = common::shownName(source.name) + ":" + std::to_string(lineNumber) + ":" +
                    std::to_string(column) + ": ";
    parts.excerpt = excerpt(text, line, begin, diagnostic.range->end, columns);
  }
  const bool isError = diagnostic.severity == Diagnostic::Severity::Error;
  parts.message += translated(isError ? "error: {1}" : "warning: {1}",
                              {common::printableText(diagnostic.message, common::LineBreaks::Keep)});
  parts.hint = common::printableText(diagnostic.hint, common::LineBreaks::Keep);
  return parts;
}

std::string renderDiagnostic(const Diagnostic& diagnostic) {
  const DiagnosticParts parts = describeDiagnostic(diagnostic, std::string_view::npos);
  std::string rendered = parts.message;
  if (!parts.excerpt.empty()) rendered.append("\n").append(parts.excerpt);
  if (!parts.hint.empty()) rendered.append("\n").append(kIndent).append(parts.hint);
  return rendered;
}

}  // namespace genostat::standalone
