// Command syntax, cut into commands.
#pragma once

#include <memory>
#include <optional>
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
  ~CommandScanner();

  // None when the text holds no further command.
  std::optional<ScanResult::Item> next();

 private:
  class Reader;

  std::unique_ptr<Reader> reader_;
};

}  // namespace genostat::standalone
