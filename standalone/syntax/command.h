// Command syntax, cut into commands.
#pragma once

#include <vector>

#include "standalone/syntax/diagnostic.h"
#include "standalone/syntax/token.h"

namespace genostat::standalone {

// One command: its tokens, the last of them of kind End. Never empty but for that.
struct Command {
  SourcePtr source;
  std::vector<Token> tokens;
};

// What a source text holds, in order. A text that cannot be cut into tokens (a quote
// that is not closed) costs one command and gives one error at its place in `commands`.
struct ScanResult {
  struct Item {
    Command command;                  // meaningful when `error` is empty
    std::optional<Diagnostic> error;
  };
  std::vector<Item> items;
};

// Cuts a text into commands. A command ends with a period at a line's end (blanks may
// follow), at a blank line, or with the text. Comments are dropped: a command that
// begins with `*` up to its end, and slash-star to star-slash anywhere outside quotes.
ScanResult scanCommands(const SourcePtr& source);

}  // namespace genostat::standalone
