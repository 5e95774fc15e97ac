// Command syntax, cut into commands.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/syntax/diagnostic.h"
#include "standalone/syntax/token.h"

namespace genostat::standalone {

// One command: its tokens, the last of them of kind End. Never empty but for that.
struct Command {
  SourcePtr source;
  std::vector<Token> tokens;

  // From the first token to the final period, as typed, comments between included.
  // The view lives as long as `source`.
  std::string_view text() const;
};

// What a source text holds, in order. A command that cannot be cut into tokens (a quote
// that is not closed) gives one error in its place.
struct ScanResult {
  struct Item {
    Command command;  // meaningful when `error` is empty
    std::optional<Diagnostic> error;
  };
  std::vector<Item> items;
};

// Cuts a text into commands. A command ends with a period at a line's end (blanks and
// comments may follow), at a blank line, or with the text. Comments are dropped: a command
// that begins with `*` up to its end, and slash-star to star-slash anywhere outside quotes.
ScanResult scanCommands(const SourcePtr& source);

// The same, one command at a time: memory for one command, however long the text.
class CommandScanner {
 public:
  explicit CommandScanner(SourcePtr source);

  // None when the text holds no further command.
  std::optional<ScanResult::Item> next();

 private:
  char at(std::size_t position) const { return position < text_.size() ? text_[position] : '\0'; }
  bool atTextEnd() const { return position_ >= text_.size(); }
  bool isCommentAt(std::size_t position) const { return at(position) == '/' && at(position + 1) == '*'; }
  bool isNumberAt(std::size_t position) const;

  std::size_t commentEnd(std::size_t position);
  bool skipGap();
  void skipCommand();
  bool endsCommand(std::size_t period);
  bool findCommand();
  void readTokens();

  void readToken();
  void readString();
  void readWord();
  bool readNumber(std::size_t end);
  bool signMayStand() const;
  std::size_t runEnd(std::size_t position);

  void add(Token::Kind kind, std::size_t end, std::string text, double number = 0);
  void fail(std::string message, std::size_t length, std::string hint = {});

  SourcePtr source_;
  std::string_view text_;
  std::size_t position_ = 0;
  std::size_t line_ = 1;
  bool commentsEnd_ = true;  // false when no comment from here on is closed

  // The command that is being read.
  std::vector<Token> tokens_;
  std::optional<Diagnostic> error_;
};

}  // namespace genostat::standalone
