#include "common/cli/argument_fault.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

#include "common/cli/program_model.h"
#include "common/text/nearest_word.h"
#include "common/text/printable_text.h"

namespace genostat::common {

namespace {

constexpr char kTakenLiterally = '\0';

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

// The option that `name` may mean, perhaps one of a subcommand, in front of that.
std::string optionMeant(const std::string& name, const CLI::App& command) {
  for (const CommandModel& other : modelOf(command).commands) {
    if (std::ranges::count(longNames(other), name) > 0) return other.name + ' ' + name;
  }
  return nearestOf(name, longNames(commandOf(command)));
}

std::string withGuess(const std::string& message, const std::string& meant, Translate translated) {
  return meant.empty() ? message : translated("{1}; did you mean {2}?", {message, meant});
}

std::string unknownCommand(const std::string& word, const CLI::App& program, CommandForPath commandForPath,
                           Translate translated) {
  const std::string quoted = quoteForMessage(word);
  const std::string command = commandForPath(word);
  if (!command.empty()) {
    return translated("{1} is no command; did you mean {2}?",
                      {quoted, program.get_name() + ' ' + command + ' ' + shownName(word)});
  }
  std::vector<std::string> names;
  for (const CommandModel& known : modelOf(program).commands) {
    names.push_back(known.name);
  }
  return withGuess(translated("unknown subcommand {1}", {quoted}), nearestOf(word, names), translated);
}

// The library gives texts only; all that name an option begin with it.
const OptionModel* optionNamedIn(std::string_view text, const std::vector<OptionModel>& options) {
  for (const OptionModel& option : options) {
    for (const std::string& name : option.names) {
      if (text.starts_with(name + ':') || text.starts_with(name + ' ')) return &option;
    }
  }
  return nullptr;
}

std::string describeError(const CLI::App& command, const CLI::ParseError& error, Translate translated) {
  const std::string text = error.what();
  const CommandModel model = commandOf(command);
  const std::string name = error.get_name();
  if (const OptionModel* option = optionNamedIn(text, model.options)) {
    const std::string& optionName = option->names.back();
    if (name == "ArgumentMismatch" && !option->value.text.empty()) {
      return translated("{1} needs a value: {2}", {optionName, option->value.text});
    }
    const std::string needs = " requires ";
    const std::size_t at = text.find(needs);
    if (name == "RequiresError" && at != std::string::npos) {
      return translated("{1} requires {2}", {optionName, text.substr(at + needs.size())});
    }
  }
  if (name == "RequiredError") {
    for (const OptionModel& argument : model.arguments) {
      if (argument.required && text.starts_with(argument.value.text)) {
        return translated("{1} is missing", {argument.value.text});
      }
    }
  }
  // What was given may stand in it.
  return shownName(text);
}

}  // namespace

const CLI::App& usedCommand(const CLI::App& program) {
  const std::vector<CLI::App*> used = program.get_subcommands();
  return used.empty() ? program : *used.front();
}

ArgumentFault argumentFault(const CLI::App& program, const CLI::ParseError* error,
                            CommandForPath commandForPath, Translate translated) {
  const CLI::App& used = usedCommand(program);
  for (const CLI::App* command : {&program, &used}) {
    const std::vector<std::string> rest = command->remaining();
    if (rest.empty()) continue;
    const std::string argument = givenArgument(rest.front());
    const std::string quoted = quoteForMessage(argument);
    if (argument.size() > 1 && argument.starts_with('-')) {
      const std::string meant = optionMeant(argument.substr(0, argument.find('=')), *command);
      return {withGuess(translated("unknown option {1}", {quoted}), meant, translated)};
    }
    if (&used == &program) return {unknownCommand(argument, program, commandForPath, translated), true};
    return {translated("unexpected argument {1}", {quoted})};
  }
  return {error != nullptr ? describeError(used, *error, translated) : std::string()};
}

std::string protectedArgument(std::string argument) {
  const std::size_t value = argument.starts_with("--") ? argument.find('=') + 1 : 0;
  if (argument.substr(value).starts_with('[')) argument.insert(value, 1, kTakenLiterally);
  return argument;
}

std::string givenArgument(std::string argument) {
  std::erase(argument, kTakenLiterally);
  return argument;
}

}  // namespace genostat::common
