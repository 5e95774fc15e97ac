#include "standalone/syntax/diagnostic.h"

#include <algorithm>

#include "standalone/language/translation.h"
#include "standalone/syntax/printable_text.h"
#include "standalone/syntax/utf8.h"

namespace genostat::standalone {

namespace {

constexpr std::string_view kIndent = "  ";
constexpr std::string_view kEllipsis = "\xE2\x80\xA6";

// How much of a long line is shown: characters before the place, and in all.
constexpr std::size_t kCharactersBefore = 60;
constexpr std::size_t kCharactersShown = 100;

constexpr std::size_t kQuotedCharacters = 60;

struct Line {
  std::size_t begin;
  std::size_t end;
};

Line lineAround(std::string_view text, std::size_t position) {
  std::size_t begin = position == 0 ? std::string_view::npos : text.rfind('\n', position - 1);
  begin = begin == std::string_view::npos ? 0 : begin + 1;
  if (begin == 0 && text.starts_with(kByteOrderMark)) begin = std::min(kByteOrderMark.size(), position);
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
    position += codePointAt(text, position).size;
  return count;
}

// Where the shown part begins: at most kCharactersBefore characters before `position`.
std::size_t shownBegin(std::string_view text, std::size_t lineBegin, std::size_t position) {
  for (std::size_t i = 0; i < kCharactersBefore && position > lineBegin; ++i) {
    do {
      --position;
    } while (position > lineBegin && (static_cast<unsigned char>(text[position]) & 0xC0U) == 0x80U);
  }
  return position;
}

// The line and, below it, the caret with a tail as long as the range. What stands before the
// caret is copied as blanks of the same width and as tabs, so that any tab stops will do.
std::string excerpt(std::string_view text, const Line& line, std::size_t begin, std::size_t end) {
  std::size_t position = shownBegin(text, line.begin, begin);
  std::string shown(kIndent);
  std::string carets(kIndent);
  if (position > line.begin) {
    shown += kEllipsis;
    carets += ' ';
  }
  std::size_t caret = carets.size();
  for (std::size_t count = 0; position < line.end && count < kCharactersShown; ++count) {
    const std::size_t size = codePointAt(text.substr(0, line.end), position).size;
    const std::string character = printableText(text.substr(position, size), LineBreaks::Keep);
    const auto columns = static_cast<std::size_t>(displayWidth(character));
    shown += character;
    if (position < begin) {
      character == "\t" ? carets += '\t' : carets.append(columns, ' ');
      caret = carets.size();
    } else if (position < end) {
      carets.append(columns, '~');
    }
    position += size;
  }
  if (position < line.end) shown += kEllipsis;
  if (caret == carets.size()) carets += '^';
  carets[caret] = '^';
  return shown + "\n" + carets;
}

}  // namespace

std::string renderDiagnostic(const Diagnostic& diagnostic) {
  std::string rendered;
  std::string quotedLine;
  if (diagnostic.range && diagnostic.range->source) {
    const SourceText& source = *diagnostic.range->source;
    const std::string_view text = source.text;
    const std::size_t begin = std::min(diagnostic.range->begin, text.size());
    const Line line = lineAround(text, begin);
    const std::size_t lineNumber =
        diagnostic.range->line ? diagnostic.range->line : countLineFeeds(text.substr(0, begin)) + 1;
    const std::size_t column = countCharacters(text.substr(line.begin, begin - line.begin)) + 1;
    rendered =
        printableText(source.name) + ":" + std::to_string(lineNumber) + ":" + std::to_string(column) + ": ";
    quotedLine = "\n" + excerpt(text, line, begin, diagnostic.range->end);
  }
  const bool isError = diagnostic.severity == Diagnostic::Severity::Error;
  rendered += translated(isError ? "error: {1}" : "warning: {1}",
                         {printableText(diagnostic.message, LineBreaks::Keep)}) +
              quotedLine;
  if (!diagnostic.hint.empty())
    rendered += "\n" + std::string(kIndent) + printableText(diagnostic.hint, LineBreaks::Keep);
  return rendered;
}

std::string quoteForMessage(std::string_view text) {
  std::size_t end = 0;
  for (std::size_t count = 0; end < text.size() && count < kQuotedCharacters; ++count) {
    end += codePointAt(text, end).size;
  }
  std::string quoted = "\"" + std::string(text.substr(0, end));
  if (end < text.size()) quoted += kEllipsis;
  return quoted + "\"";
}

}  // namespace genostat::standalone
