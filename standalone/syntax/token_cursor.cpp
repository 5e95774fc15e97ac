#include "standalone/syntax/token_cursor.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "standalone/language/translation.h"
#include "standalone/syntax/expectation.h"
#include "standalone/syntax/keyword.h"

namespace genostat::standalone {

namespace {

// Typographic quotes, U+2018 to U+201F: what word processors make of straight ones.
bool beginsWithCurlyQuote(std::string_view text) {
  return text.size() > 2 && text.starts_with("\xE2\x80") && text[2] >= '\x98' && text[2] <= '\x9F';
}

// What slips of the hand lead to a token that fits nowhere.
std::string hintAt(const Token& token) {
  if (token.isSymbol('.')) return translated("a period ends a command only at the end of a line");
  if (beginsWithCurlyQuote(token.text)) return translated("texts need straight quotes, ' or \"");
  return {};
}

}  // namespace

const Token& TokenCursor::peek(std::size_t ahead) const {
  const std::size_t last = command_.tokens.size() - 1;
  return command_.tokens[ahead < last - std::min(position_, last) ? position_ + ahead : last];
}

const Token& TokenCursor::next() {
  const Token& token = peek();
  // Shown to nobody.
  if (isPlace(token)) throw CommandError(std::string());
  if (token.kind != Token::Kind::End) ++position_;
  return token;
}

bool TokenCursor::acceptSymbol(char symbol) {
  if (!peek().isSymbol(symbol)) return false;
  next();
  return true;
}

bool TokenCursor::acceptKeyword(std::string_view keyword) {
  return acceptKeyword({&keyword, 1}).has_value();
}

std::optional<std::size_t> TokenCursor::acceptKeyword(Keywords keywords) {
  if (peek().kind != Token::Kind::Word) return std::nullopt;
  noteKeywords(peek(), keywords);
  const auto index = matchKeyword(peek().text, keywords);
  if (index) next();
  return index;
}

void TokenCursor::expectSymbol(char symbol) {
  if (!acceptSymbol(symbol)) failExpected(quoteForMessage({&symbol, 1}));
}

std::size_t TokenCursor::expectKeyword(Keywords keywords) {
  return expectKeyword(keywords, translated("keyword"));
}

std::size_t TokenCursor::expectKeyword(Keywords keywords, std::string_view what) {
  if (const auto index = acceptKeyword(keywords)) return *index;
  if (peek().kind != Token::Kind::Word) failExpected(joinAlternatives(keywords));
  KeywordFault fault = explainKeyword(peek().text, keywords, what);
  fail(std::move(fault.message), peek(), std::move(fault.hint));
}

std::string TokenCursor::expectName(std::string_view what) {
  if (peek().kind != Token::Kind::Word) failExpected(what);
  return next().text;
}

std::string TokenCursor::expectString(std::string_view what) {
  if (peek().kind != Token::Kind::String) failExpected(translated("{1} in quotes", {what}));
  return next().text;
}

double TokenCursor::expectNumber(std::string_view what) {
  if (peek().kind != Token::Kind::Number) failExpected(what);
  return next().number;
}

std::int32_t TokenCursor::expectInteger(std::string_view what) {
  const Token& token = peek();
  if (token.number != std::trunc(token.number)) failExpected(what);
  const double number = expectNumber(what);
  using Limits = std::numeric_limits<std::int32_t>;
  if (number < Limits::min() || number > Limits::max()) {
    fail(translated("the number {1} is out of range", {token.text}), token,
         translated("expected a number from {1} to {2}",
                    {std::to_string(Limits::min()), std::to_string(Limits::max())}));
  }
  return static_cast<std::int32_t>(number);
}

void TokenCursor::expectEnd() {
  if (!atEnd()) failExpected(translated("the end of the command"));
}

std::optional<std::size_t> TokenCursor::nextSubcommand(Keywords subcommands) {
  if (atEnd()) return std::nullopt;
  if (!acceptSymbol('/') && subcommandSeen_) failExpected(translated("\"/\" or the end of the command"));
  subcommandSeen_ = true;
  const std::size_t index = expectKeyword(subcommands, translated("subcommand"));
  acceptSymbol('=');
  return index;
}

void TokenCursor::fail(std::string message, const Token& token, std::string hint) {
  throw CommandError(
      Diagnostic{Diagnostic::Severity::Error, std::move(message), token.range, std::move(hint)});
}

void TokenCursor::failExpected(std::string_view what) const {
  fail(translated("expected {1}, found {2}", {what, describeToken(peek())}), peek(), hintAt(peek()));
}

std::string describeToken(const Token& token) {
  switch (token.kind) {
    case Token::Kind::Word:
    case Token::Kind::Symbol:
      return quoteForMessage(token.text);
    case Token::Kind::Number:
      return translated("the number {1}", {token.text});
    case Token::Kind::String:
      return translated("the text {1}", {quoteForMessage(token.text)});
    case Token::Kind::End:
      break;
  }
  return translated("the end of the command");
}

}  // namespace genostat::standalone
