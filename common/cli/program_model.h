// A program's options as documents see them.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace CLI {
class App;
}

namespace genostat::common {

// What a value may be.
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

// A titled block of a footer.
struct SectionModel {
  std::string title;  // without its colon
  std::vector<std::string> lines;
};

struct CommandModel {
  std::string name;
  std::string description;
  std::vector<OptionModel> options;
  std::vector<OptionModel> arguments;
  std::vector<std::string> paragraphs;  // of the footer, lines joined
  std::vector<SectionModel> sections;
};

struct ProgramModel {
  CommandModel program;
  std::vector<CommandModel> commands;
  std::string version;
};

ProgramModel modelOf(const CLI::App& app);
CommandModel commandOf(const CLI::App& app);

// With a capital letter in front and a period at the end.
std::string asSentence(std::string text);

// Documents, each a whole file.
std::string manualPage(const ProgramModel& model, const std::string& seeAlso);
std::string bashCompletion(const ProgramModel& model);
std::string zshCompletion(const ProgramModel& model);
std::string fishCompletion(const ProgramModel& model);

}  // namespace genostat::common
