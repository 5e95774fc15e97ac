// Completion for bash: one function that looks for the command among the words before the cursor.
#include <string_view>

#include "common/cli/program_model.h"
#include "common/cli/shell_words.h"

namespace genostat::common {

namespace {

// A call of the script's own function that fills in the answer.
std::string bashProposal(const std::string& reply, const ValueModel& value) {
  if (!value.choices.empty())
    return reply + " -W " + shellQuoted(joinWords(value.choices)) + (value.file ? " -f" : "");
  if (value.file) return reply + " -f";
  if (value.folder) return reply + " -d";
  return ":";
}

std::string optionNames(const std::vector<OptionModel>& options) {
  std::vector<std::string> names;
  for (const OptionModel& option : options) {
    names.insert(names.end(), option.names.begin(), option.names.end());
  }
  return joinWords(names);
}

std::string valueCases(const std::string& reply, const std::string& command,
                       const std::vector<OptionModel>& options) {
  std::string out;
  for (const OptionModel& option : options) {
    if (option.value.text.empty()) continue;
    std::vector<std::string> patterns;
    for (const std::string& name : option.names) {
      patterns.push_back(std::string(command).append(":").append(name));
    }
    out += "    " + joinWords(patterns, " | ") + ") " + bashProposal(reply, option.value) + "; return ;;\n";
  }
  return out;
}

}  // namespace

std::string bashCompletion(const ProgramModel& model) {
  const std::string& program = model.program.name;
  const std::string function = "_" + functionName(program);
  const std::string reply = function + "_reply";
  std::vector<std::string> commands;
  std::string values = valueCases(reply, "", model.program.options);
  std::string options =
      "      '') " + reply + " -W " + shellQuoted(optionNames(model.program.options)) + " ;;\n";
  std::string arguments;
  for (const CommandModel& command : model.commands) {
    commands.push_back(command.name);
    values += valueCases(reply, command.name, command.options);
    options +=
        "      " + command.name + ") " + reply + " -W " + shellQuoted(optionNames(command.options)) + " ;;\n";
    if (!command.arguments.empty()) {
      arguments +=
          "    " + command.name + ") " + bashProposal(reply, command.arguments.front().value) + " ;;\n";
    }
  }
  return "# Completion of " + program + " for bash.\n" + function + R"(() {
  local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} command='' i
  COMPREPLY=()
  )" + reply +
         R"(() {
    # Elsewhere than in a completion there are no such options to set.
    [[ $* == *-[fd]* ]] && compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen "$@" -- "$word")
  }
  for ((i = 1; i < COMP_CWORD; i++)); do
    case ${COMP_WORDS[i]} in
      )" +
         joinWords(commands, " | ") +
         R"() command=${COMP_WORDS[i]}; break ;;
    esac
  done
  # The shell takes --option=value apart.
  if [[ $word == = ]]; then
    word=''
  elif [[ $previous == = ]]; then
    previous=${COMP_WORDS[COMP_CWORD - 2]}
  fi
  case $command:$previous in
)" + values +
         R"(  esac
  if [[ $word == -* ]]; then
    case $command in
)" + options +
         R"(    esac
    return
  fi
  case $command in
    '') )" +
         reply + " -W " + shellQuoted(joinWords(commands)) + " ;;\n" + arguments + "  esac\n}\ncomplete -F " +
         function + ' ' + program + '\n';
}

}  // namespace genostat::common
