// Completion for fish: one line for each option.
#include "common/cli/program_model.h"
#include "common/cli/shell_words.h"

namespace genostat::common {

namespace {

std::string fishProposal(const ValueModel& value) {
  if (value.text.empty()) return "";
  std::string out = value.file ? " -r -F" : " -x";
  if (!value.choices.empty()) return out + " -a " + fishQuoted(joinWords(value.choices));
  if (value.folder && !value.file) out += " -a '(__fish_complete_directories)'";
  return out;
}

std::string completionLines(const std::string& start, const CommandModel& command) {
  std::string out;
  for (const OptionModel& option : command.options) {
    out += start;
    for (const std::string& name : option.names) {
      out += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
    }
    out += fishProposal(option.value) + " -d " + fishQuoted(option.description) + '\n';
  }
  return out;
}

}  // namespace

std::string fishCompletion(const ProgramModel& model) {
  const std::string begin = "complete -c " + model.program.name;
  std::string out = "# Completion of " + model.program.name + " for fish.\n" + begin + " -f\n";
  out += completionLines(begin + " -n __fish_use_subcommand", model.program);
  for (const CommandModel& command : model.commands) {
    const std::string inside = begin + " -n " + fishQuoted("__fish_seen_subcommand_from " + command.name);
    out += begin + " -n __fish_use_subcommand -a " + command.name + " -d " + fishQuoted(command.description) +
           '\n';
    out += completionLines(inside, command);
    for (const OptionModel& argument : command.arguments) {
      if (argument.value.file) out += inside + " -F\n";
    }
  }
  return out;
}

}  // namespace genostat::common
