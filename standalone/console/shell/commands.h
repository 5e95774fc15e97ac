// What the shell words do, but for leaving the shell.
#pragma once

#include <cstddef>
#include <string_view>

#include "standalone/console/shell/view.h"
#include "standalone/console/shell/words.h"
#include "standalone/console/shell/work.h"

namespace genostat::standalone {

// Where a line comes from.
struct ShellLine {
  std::string_view text;
  std::size_t number = 1;  // in what is piped in
  bool typed = false;      // by a person
};

enum class WordOutcome { Done, Failed, Quit };

// Runs a line by its first word; one that is no shell word is an error. Shows answers and errors. Quit: the
// user wants to leave.
WordOutcome runShellWord(const FirstWord& word, const ShellLine& line, ShellWork& work, ShellView& view);

}  // namespace genostat::standalone
