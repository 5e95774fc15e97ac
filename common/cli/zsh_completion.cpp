// Completion for zsh: specifications for its _arguments function.
#include <string_view>

#include "common/cli/program_model.h"
#include "common/cli/shell_words.h"

namespace genostat::common {

namespace {

// Brackets and colons end the parts of a specification.
std::string specificationText(std::string_view text) {
  std::string out;
  for (const char character : text) {
    if (character == '[' || character == ']' || character == ':' || character == '\\') out += '\\';
    out += character == '\n' ? ' ' : character;
  }
  return out;
}

// ":message:action".
std::string zshProposal(const ValueModel& value) {
  std::string action = " ";
  if (!value.choices.empty()) {
    action = "(" + joinWords(value.choices) + ")";
  } else if (value.file) {
    action = "_files";
  } else if (value.folder) {
    action = "_files -/";
  }
  return ":" + specificationText(value.text) + ":" + action;
}

std::string argumentLines(const CommandModel& command, const std::string& indent) {
  std::string out;
  for (const OptionModel& option : command.options) {
    const std::string value = option.value.text.empty() ? std::string() : zshProposal(option.value);
    const std::string exclusive = "(" + joinWords(option.names) + ")";
    for (const std::string& name : option.names) {
      std::string specification = exclusive + name;
      if (!value.empty()) specification += name.starts_with("--") ? "=" : "+";
      specification.append("[").append(specificationText(option.description)).append("]").append(value);
      out.append(indent).append(shellQuoted(specification)).append(" \\\n");
    }
  }
  return out;
}

}  // namespace

std::string zshCompletion(const ProgramModel& model) {
  const std::string& program = model.program.name;
  const std::string function = "_" + functionName(program);
  std::string commands;
  std::string cases;
  for (const CommandModel& command : model.commands) {
    commands += "        " + shellQuoted(command.name + ":" + specificationText(command.description)) + "\n";
    cases +=
        "        " + command.name + ")\n          _arguments \\\n" + argumentLines(command, "            ");
    for (const OptionModel& argument : command.arguments) {
      cases +=
          "            " +
          shellQuoted((argument.repeated ? std::string("*") : std::string()) + zshProposal(argument.value)) +
          " \\\n";
    }
    cases += "            && return\n          ;;\n";
  }
  return "#compdef " + program + "\n# Completion of " + program + " for zsh.\n" + function +
         "() {\n  local curcontext=\"$curcontext\" state line\n  local -a commands\n  typeset -A opt_args\n"
         "  _arguments -C \\\n" +
         argumentLines(model.program, "    ") +
         "    '1:command:->command' \\\n    '*::argument:->argument' && return\n  case $state in\n    "
         "command)\n"
         "      commands=(\n" +
         commands +
         "      )\n      _describe command commands\n      ;;\n    argument)\n      case $words[1] in\n" +
         cases + "      esac\n      ;;\n  esac\n}\n" + function + " \"$@\"\n";
}

}  // namespace genostat::common
