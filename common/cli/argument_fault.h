// What is wrong with a command line, in the user's words.
#pragma once

#include <string>

#include "common/text/filled_text.h"

namespace CLI {
class App;
class ParseError;
}  // namespace CLI

namespace genostat::common {

// The command that takes such a path, where `word` is one; else empty.
using CommandForPath = std::string (*)(const std::string& word);

struct ArgumentFault {
  std::string message;  // empty: nothing is wrong
  bool unknownCommand = false;
};

// The subcommand that the arguments named, or else the program.
const CLI::App& usedCommand(const CLI::App& program);

// After parsing; `error` is what it threw, or null. The program and its subcommands must allow extras: a
// misspelled option is the likelier cause of whatever else is missing, and comes first.
ArgumentFault argumentFault(const CLI::App& program, const CLI::ParseError* error,
                            CommandForPath commandForPath, Translate translated);

// The library takes a text in square brackets apart at its commas, but such is a good name of a file. So it
// gets one with a zero character in front, which no argument holds.
std::string protectedArgument(std::string argument);
std::string givenArgument(std::string argument);

}  // namespace genostat::common
