// The words of genostat shell that are no commands of the host: each stands on a line of its own.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace genostat::standalone {

enum class ShellVerb { Jobs, Cancel, Wait, Datasets, Show, Output, Run, Help, Quit };

struct ShellWord {
  std::string_view name;  // lower case
  ShellVerb verb;
};

std::span<const ShellWord> shellWords();
std::string_view nameOf(ShellVerb verb);

// A part of a line: without its quotes, where it has any.
struct ShellArgument {
  std::string text;
  std::size_t begin = 0;  // in the line, quotes included
  std::size_t end = 0;
};

// Cuts a line at blanks. A text in quotes is one part, a quote inside doubled; one that is not closed ends
// with the line. A period at the line's end, where it is not in quotes, ends the line and belongs to no part.
std::vector<ShellArgument> splitShellLine(std::string_view line);

// What the first word of a line means.
struct FirstWord {
  enum class Kind {
    Empty,     // a blank line
    Shell,     // a shell word
    Command,   // the beginning of command syntax
    Misspelt,  // none of both, but nearest to a shell word
    Unknown    // none of both
  };
  Kind kind = Kind::Command;
  ShellVerb verb = ShellVerb::Help;  // the shell word, or the nearest
  std::string nearest = {};          // to what is none; empty when all are far off
};

// `commands`: those of the host, which go before shell words. Any case, three or more letters where they are
// unique.
FirstWord classifyFirstWord(std::string_view line, std::span<const std::string_view> commands);

}  // namespace genostat::standalone
