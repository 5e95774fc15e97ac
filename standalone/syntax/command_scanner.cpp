// Cuts a source text into commands and tokens, in one pass from left to right. Each byte is
// looked at a bounded number of times: what looks ahead (a period that may end the command)
// stops at the next thing that is neither blank nor comment, and the search for the end of a
// comment is not repeated once it found that none follows.
#include <algorithm>
#include <charconv>
#include <system_error>
#include <utility>

#include "common/text/ascii.h"
#include "common/text/utf8.h"
#include "standalone/language/translation.h"
#include "standalone/syntax/command.h"

namespace genostat::standalone {

namespace {

// A command beyond this is refused: it is damage, and its tokens would fill the memory.
constexpr std::size_t kMaxTokens = 1'000'000;

// A carriage return is a blank: before a line feed it belongs to the line's end, and a lone one to nothing.
bool isBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\v' || c == '\f';
}

bool isSign(char c) {
  return c == '+' || c == '-';
}

}  // namespace

bool isWordByte(char c) {
  const char lower = common::lowerLetter(c);
  return common::isDigit(c) || (lower >= 'a' && lower <= 'z') || static_cast<unsigned char>(c) >= 0x80 ||
         std::string_view("_.@#$").find(c) != std::string_view::npos;
}

CommandScanner::CommandScanner(SourcePtr source) : source_(std::move(source)) {
  if (!source_) source_ = std::make_shared<const SourceText>();
  text_ = source_->text;
  if (text_.starts_with(common::kByteOrderMark)) position_ = common::kByteOrderMark.size();
}

bool CommandScanner::isNumberAt(std::size_t position) const {
  return common::isDigit(at(position)) || (at(position) == '.' && common::isDigit(at(position + 1)));
}

std::optional<ScanResult::Item> CommandScanner::next() {
  tokens_.clear();
  error_.reset();
  if (!findCommand()) return std::nullopt;
  if (!error_) readTokens();
  if (error_) {
    skipCommand();
    return ScanResult::Item{{source_, {}}, std::move(error_)};
  }
  return ScanResult::Item{{source_, std::move(tokens_)}, std::nullopt};
}

// Steps over blank lines, comments and lone periods. False when nothing follows them.
bool CommandScanner::findCommand() {
  for (;;) {
    while (skipGap()) {
    }
    if (error_) return true;
    if (atTextEnd()) return false;
    if (at(position_) == '*') {
      skipCommand();
    } else if (endsCommand(position_)) {
      ++position_;
    } else {
      return true;
    }
  }
}

void CommandScanner::readTokens() {
  for (;;) {
    readToken();
    if (error_) return;
    const std::size_t end = tokens_.back().range.end;
    const std::size_t line = line_;
    const bool blankLine = skipGap();
    if (error_) return;
    if (blankLine || atTextEnd()) {
      tokens_.push_back({Token::Kind::End, {}, 0, {source_, end, end, line}});
      return;
    }
    if (endsCommand(position_)) {
      tokens_.push_back({Token::Kind::End, {}, 0, {source_, position_, position_ + 1, line_}});
      ++position_;
      return;
    }
  }
}

// Behind the comment that begins at `position`; npos when it is not closed.
std::size_t CommandScanner::commentEnd(std::size_t position) {
  const std::size_t end = commentsEnd_ ? text_.find("*/", position + 2) : std::string_view::npos;
  commentsEnd_ = end != std::string_view::npos;
  return commentsEnd_ ? end + 2 : end;
}

// Steps over blanks, line ends and comments. True when it stopped after a blank line; a line
// that holds a comment is not blank.
bool CommandScanner::skipGap() {
  bool blankSoFar = false;
  for (; !atTextEnd(); ++position_) {
    const char c = at(position_);
    if (c == '\n') {
      ++line_;
      if (std::exchange(blankSoFar, true)) {
        ++position_;
        return true;
      }
    } else if (isCommentAt(position_)) {
      const std::size_t end = commentEnd(position_);
      if (end == std::string_view::npos) {
        fail(translated("this comment is not closed"), 2, translated("expected {1} after it", {"\"*/\""}));
        return false;
      }
      const std::string_view comment = text_.substr(position_, end - position_);
      line_ += static_cast<std::size_t>(std::count(comment.begin(), comment.end(), '\n'));
      position_ = end - 1;
      blankSoFar = false;
    } else if (!isBlank(c)) {
      return false;
    }
  }
  return false;
}

// Steps over the rest of a comment command, or of one that cannot be read. Quotes mean nothing
// here: a comment may hold an apostrophe, and after an open quote they are no guide.
void CommandScanner::skipCommand() {
  for (bool firstLine = true; !atTextEnd(); firstLine = false) {
    const std::size_t lineEnd = std::min(text_.find('\n', position_), text_.size());
    std::size_t last = lineEnd;
    while (last > position_ && isBlank(text_[last - 1]))
      --last;
    const bool blankLine = last == position_ && !firstLine;
    const bool ended = blankLine || (last > position_ && text_[last - 1] == '.');
    if (lineEnd < text_.size()) ++line_;
    position_ = std::min(lineEnd + 1, text_.size());
    if (ended) return;
  }
}

// Whether a period stands at `period` with nothing but blanks and comments after it on its line.
bool CommandScanner::endsCommand(std::size_t period) {
  if (at(period) != '.') return false;
  for (std::size_t position = period + 1; position < text_.size(); ++position) {
    if (text_[position] == '\n') return true;
    if (isCommentAt(position)) {
      const std::size_t end = commentEnd(position);
      if (end == std::string_view::npos) return true;
      if (text_.substr(position, end - position).find('\n') != std::string_view::npos) return true;
      position = end - 1;
    } else if (!isBlank(text_[position])) {
      return false;
    }
  }
  return true;
}

void CommandScanner::readToken() {
  const char c = at(position_);
  if (c == '\'' || c == '"') return readString();
  if (isSign(c) && isNumberAt(position_ + 1) && signMayStand() && readNumber(runEnd(position_ + 1))) return;
  if (isWordByte(c)) return readWord();
  add(Token::Kind::Symbol, position_ + 1, std::string(1, c));
}

// A literal ends on its line: an open quote then costs one command, not the rest of the text.
void CommandScanner::readString() {
  const char quote = text_[position_];
  std::string value;
  for (std::size_t i = position_ + 1; i < text_.size() && text_[i] != '\n'; ++i) {
    if (text_[i] == quote) {
      if (at(i + 1) != quote) return add(Token::Kind::String, i + 1, std::move(value));
      ++i;
    }
    value += text_[i];
  }
  fail(
      translated("this quote is not closed on its line"), 1,
      translated("expected {1} at the end of the text (inside the text it is written twice)", {{&quote, 1}}));
}

// A run of word characters is a number when all of it reads as one. Periods at its end belong
// to a number (95.) but not to a name.
void CommandScanner::readWord() {
  const std::size_t end = runEnd(position_);
  if (isNumberAt(position_) && readNumber(end)) return;
  std::size_t wordEnd = end;
  while (wordEnd > position_ && text_[wordEnd - 1] == '.')
    --wordEnd;
  if (wordEnd > position_) {
    const bool isNumber = isNumberAt(position_) && readNumber(wordEnd);
    if (!isNumber) add(Token::Kind::Word, wordEnd, std::string(text_.substr(position_, wordEnd - position_)));
  }
  while (!error_ && position_ < end)
    add(Token::Kind::Symbol, position_ + 1, ".");
}

// Reads the number between the position and `end`, or a little further when an exponent's sign
// stands there. False when that is not a number, or not all of it.
bool CommandScanner::readNumber(std::size_t end) {
  const bool exponent =
      (text_[end - 1] == 'e' || text_[end - 1] == 'E') && isSign(at(end)) && common::isDigit(at(end + 1));
  if (exponent) end = runEnd(end + 1);
  const std::string_view typed = text_.substr(position_, end - position_);
  const std::string_view digits = typed.substr(typed[0] == '+' ? 1 : 0);
  double value = 0;
  const auto [behind, fault] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (behind != digits.data() + digits.size()) return false;
  if (fault == std::errc::result_out_of_range) {
    fail(translated("this number is too large or too small"), typed.size());
  } else {
    add(Token::Kind::Number, end, std::string(typed), value);
  }
  return true;
}

// Directly after a value a sign is an operator: 5-3, but (-3), =-3 and 5 -3.
bool CommandScanner::signMayStand() const {
  if (tokens_.empty() || tokens_.back().range.end != position_) return true;
  return tokens_.back().kind == Token::Kind::Symbol && !tokens_.back().isSymbol(')');
}

// Behind the word characters from `position` on, without a period that ends the command.
std::size_t CommandScanner::runEnd(std::size_t position) {
  while (position < text_.size() && isWordByte(text_[position]))
    ++position;
  return endsCommand(position - 1) ? position - 1 : position;
}

void CommandScanner::add(Token::Kind kind, std::size_t end, std::string text, double number) {
  if (tokens_.size() == kMaxTokens) {
    return fail(
        translated("this command is too long"), 1,
        translated("a command has at most {1} words, numbers and signs", {std::to_string(kMaxTokens)}));
  }
  tokens_.push_back({kind, std::move(text), number, {source_, position_, end, line_}});
  position_ = end;
}

void CommandScanner::fail(std::string message, std::size_t length, std::string hint) {
  error_ = Diagnostic{Diagnostic::Severity::Error, std::move(message),
                      SourceRange{source_, position_, position_ + length, line_}, std::move(hint)};
}

ScanResult scanCommands(const SourcePtr& source) {
  ScanResult result;
  CommandScanner scanner(source);
  while (auto item = scanner.next())
    result.items.push_back(std::move(*item));
  return result;
}

std::string_view Command::text() const {
  if (!source || tokens.empty()) return {};
  const std::size_t begin = tokens.front().range.begin;
  return std::string_view(source->text).substr(begin, tokens.back().range.end - begin);
}

}  // namespace genostat::standalone
