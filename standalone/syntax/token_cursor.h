// A walk over the tokens of one command, for the parsers of the host's own commands.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "standalone/syntax/command.h"

namespace genostat::standalone {

// Stands at one token at a time, from the command's first word to its End token, and never
// goes beyond that. `accept...` steps over a token that fits and says whether it did;
// `expect...` throws CommandError at the token that stands there instead. `what` names the
// missing thing in the message ("a file name"). Keywords match in any case and abbreviated
// as matchKeyword says. The command outlives the cursor.
class TokenCursor {
 public:
  using Keywords = std::span<const std::string_view>;

  explicit TokenCursor(const Command& command) : command_(command) {}

  // The token here, or one further on; after the last one always the End token.
  const Token& peek(std::size_t ahead = 0) const;
  // Steps over the token here and returns it; the End token is never stepped over.
  const Token& next();
  bool atEnd() const { return peek().kind == Token::Kind::End; }
  // At a slash or at the command's end: no further value of this subcommand follows.
  bool atSubcommandEnd() const { return atEnd() || peek().isSymbol('/'); }

  bool acceptSymbol(char symbol);
  bool acceptKeyword(std::string_view keyword);
  // The index of the keyword that stands here.
  std::optional<std::size_t> acceptKeyword(Keywords keywords);

  void expectSymbol(char symbol);
  // The error names the keywords and the nearest one. `what`: "keyword", "encoding".
  std::size_t expectKeyword(Keywords keywords, std::string_view what);
  std::size_t expectKeyword(Keywords keywords);
  std::string expectName(std::string_view what);
  std::string expectString(std::string_view what);
  double expectNumber(std::string_view what);
  // A whole number of 32 bits. `what` says that it is one: "a whole number for FIRSTCASE".
  std::int32_t expectInteger(std::string_view what);
  void expectEnd();

  // Steps to the next subcommand: over its slash (which may be left out before the first), its
  // keyword, and an equals sign after that. Its index in the list, or none at the command's end.
  // Anything that the caller has left unread before it is an error.
  std::optional<std::size_t> nextSubcommand(Keywords subcommands);

  // Throws CommandError at `token`.
  [[noreturn]] static void fail(std::string message, const Token& token, std::string hint = {});
  // "expected WHAT, found ..." at the token here.
  [[noreturn]] void failExpected(std::string_view what) const;

 private:
  const Command& command_;
  std::size_t position_ = 0;
  bool subcommandSeen_ = false;
};

// What a message calls a token: "NAME", the text "a b", the number 5, the end of the command.
std::string describeToken(const Token& token);

}  // namespace genostat::standalone
