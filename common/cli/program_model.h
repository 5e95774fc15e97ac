// A program's options and help as its documents see them.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "common/cli/command_help.h"

namespace CLI {
class App;
}

namespace genostat::common {

// What a value may be. A type name, or the name of an argument without one, lists that between bars: FILE,
// FOLDER (or DIR), words in lower case or digits to be taken as they are, others for anything else: "FILE|-",
// "none|illumina|SEQUENCE".
struct ValueModel {
  std::string text;  // the type name, or the argument's name; empty for a flag
  std::vector<std::string> choices;
  bool file = false;
  bool folder = false;
};

struct OptionModel {
  std::vector<std::string> names;  // with their dashes, short ones first; empty for an argument
  ValueModel value;
  std::string description;
  bool required = false;
  bool repeated = false;
};

struct CommandModel {
  std::string name;
  std::string description;
  std::vector<OptionModel> options;
  std::vector<OptionModel> arguments;
  CommandHelp help;
};

struct ProgramModel {
  CommandModel program;
  std::vector<CommandModel> commands;
  std::string version;  // "genostat 0.1.0"
};

// Options and commands of the empty group stay out.
CommandModel commandOf(const CLI::App& app, const CommandHelp& help = {});
ProgramModel modelOf(const CLI::App& app, const std::map<const CLI::App*, CommandHelp>& helps = {});

// With a capital letter in front and a period at the end.
std::string asSentence(std::string text);

// Documents, each a whole file. `seeAlso` names other manual pages.
std::string manualPage(const ProgramModel& model, const std::string& seeAlso);
std::string bashCompletion(const ProgramModel& model);
std::string zshCompletion(const ProgramModel& model);
std::string fishCompletion(const ProgramModel& model);

}  // namespace genostat::common
