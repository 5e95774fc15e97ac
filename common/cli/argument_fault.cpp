#include "common/cli/argument_fault.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <string_view>
#include <utility>

#include "common/cli/program_model.h"
#include "common/text/nearest_word.h"

namespace genostat::common {

namespace {

using Kind = ArgumentFault::Kind;

bool looksLikeOption(const std::string& argument) {
  return argument.size() > 1 && argument.front() == '-';
}

std::string nearestOf(std::string_view word, const std::vector<std::string>& names) {
  const std::vector<std::string_view> views(names.begin(), names.end());
  return std::string(nearestWord(word, views).value_or(std::string_view()));
}

std::vector<std::string> longNames(const CommandModel& command) {
  std::vector<std::string> names;
  for (const OptionModel& option : command.options) {
    if (option.names.back().starts_with("--")) names.push_back(option.names.back());
  }
  return names;
}

ArgumentFault unknownOption(const std::string& argument, const CLI::App& command) {
  const std::string name = argument.substr(0, argument.find('='));
  // An option of a subcommand, in front of that.
  for (const CommandModel& other : modelOf(command).commands) {
    for (const std::string& known : longNames(other)) {
      if (known == name) return {Kind::UnknownOption, argument, {}, other.name + ' ' + name};
    }
  }
  return {Kind::UnknownOption, argument, {}, nearestOf(name, longNames(commandOf(command)))};
}

ArgumentFault unknownArgument(const std::string& argument, const CLI::App& command, bool commandExpected) {
  if (looksLikeOption(argument)) return unknownOption(argument, command);
  if (!commandExpected) return {Kind::UnexpectedArgument, argument, {}, {}};
  std::vector<std::string> names;
  for (const CommandModel& subcommand : modelOf(command).commands) {
    names.push_back(subcommand.name);
  }
  return {Kind::UnknownCommand, argument, {}, nearestOf(argument, names)};
}

// The library tells only texts; all that name an option begin with it.
const OptionModel* optionNamedIn(std::string_view text, const std::vector<OptionModel>& options) {
  for (const OptionModel& option : options) {
    for (const std::string& name : option.names) {
      if (text.starts_with(name + ':') || text.starts_with(name + ' ')) return &option;
    }
  }
  return nullptr;
}

ArgumentFault faultOfError(const CLI::App& command, const CLI::ParseError& error) {
  const std::string text = error.what();
  const CommandModel model = commandOf(command);
  const std::string name = error.get_name();
  if (const OptionModel* option = optionNamedIn(text, model.options)) {
    const std::string& optionName = option->names.back();
    if (name == "ArgumentMismatch" && !option->value.text.empty()) {
      return {Kind::MissingValue, optionName, option->value.text, {}};
    }
    const std::string needs = " requires ";
    const std::size_t at = text.find(needs);
    if (name == "RequiresError" && at != std::string::npos) {
      return {Kind::MissingPartner, optionName, text.substr(at + needs.size()), {}};
    }
  }
  if (name == "RequiredError") {
    const auto missing = std::find_if(model.arguments.begin(), model.arguments.end(), [&](const auto& one) {
      return one.required && text.starts_with(one.value.text);
    });
    if (missing != model.arguments.end()) return {Kind::MissingArgument, missing->value.text, {}, {}};
  }
  return {Kind::WrongValue, {}, text, {}};
}

}  // namespace

const CLI::App& usedCommand(const CLI::App& program) {
  const std::vector<CLI::App*> used = program.get_subcommands();
  return used.empty() ? program : *used.front();
}

ArgumentFault argumentFault(const CLI::App& program, const CLI::ParseError* error) {
  const CLI::App& used = usedCommand(program);
  const std::vector<std::string> early = program.remaining();
  if (!early.empty()) return unknownArgument(early.front(), program, &used == &program);
  const std::vector<std::string> rest = used.remaining();
  if (!rest.empty()) return unknownArgument(rest.front(), used, false);
  return error != nullptr ? faultOfError(used, *error) : ArgumentFault();
}

bool asksForHelp(const std::vector<std::string>& arguments) {
  for (const std::string& argument : arguments) {
    if (argument == "--") return false;
    if (argument == "-h" || argument == "--help") return true;
  }
  return false;
}

}  // namespace genostat::common
