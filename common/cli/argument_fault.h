// What is wrong with a command line, found from a program's options, for a message in the program's own
// words.
#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
class ParseError;
}  // namespace CLI

namespace genostat::common {

struct ArgumentFault {
  enum class Kind {
    None,
    UnknownOption,       // `subject` as it was given; `meant`: the option that it may be
    UnknownCommand,      // the same for a subcommand
    UnexpectedArgument,  // `subject`: one too many
    MissingValue,        // `subject`: the option; `detail`: what its values look like
    MissingArgument,     // `subject`: its name
    MissingPartner,      // `subject` is an option that needs the option `detail`
    WrongValue,          // `detail`: a whole text, from the check of that value or from the library
  };
  Kind kind = Kind::None;
  std::string subject;
  std::string detail;
  std::string meant;  // empty: no guess
};

// The subcommand that the arguments named, or else the program.
const CLI::App& usedCommand(const CLI::App& program);

// After parsing; `error` is what it threw, or null. The program and its subcommands must allow extras: a
// misspelled option is the likelier cause of whatever else is missing, and comes first.
ArgumentFault argumentFault(const CLI::App& program, const CLI::ParseError* error);

// Whether -h or --help is among the arguments, so that help wins over all that is wrong with them.
bool asksForHelp(const std::vector<std::string>& arguments);

}  // namespace genostat::common
