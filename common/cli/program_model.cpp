#include "common/cli/program_model.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <sstream>

namespace genostat::common {

namespace {

bool isPlainWord(const std::string& word) {
  return !word.empty() && std::all_of(word.begin(), word.end(), [](char character) {
    return (character >= 'a' && character <= 'z') || (character >= '0' && character <= '9');
  });
}

ValueModel valueOf(const std::string& text) {
  ValueModel value;
  value.text = text;
  std::istringstream words(text);
  for (std::string word; std::getline(words, word, '|');) {
    if (isPlainWord(word)) value.choices.push_back(word);
    value.file = value.file || word.starts_with("FILE");
    value.folder = value.folder || word.starts_with("DIR") || word.starts_with("FOLDER");
  }
  return value;
}

OptionModel optionOf(const CLI::Option& option) {
  OptionModel model;
  for (const std::string& name : option.get_snames())
    model.names.push_back("-" + name);
  for (const std::string& name : option.get_lnames())
    model.names.push_back("--" + name);
  const bool argument = model.names.empty();
  // The library joins what its checks say to the type.
  const std::string type = option.get_type_name();
  const std::string typeName = type.substr(0, type.find(':'));
  if (argument) {
    model.value = valueOf(option.get_name(true));
  } else if (option.get_items_expected_max() > 0) {
    model.value = valueOf(typeName.empty() ? "VALUE" : typeName);
  }
  model.description = option.get_description();
  model.required = option.get_required();
  model.repeated = option.get_items_expected_max() > 1;
  return model;
}

}  // namespace

CommandModel commandOf(const CLI::App& app, const CommandHelp& help) {
  CommandModel model;
  model.name = app.get_name();
  model.description = app.get_description();
  for (const CLI::Option* option : app.get_options()) {
    if (option->get_group().empty()) continue;
    (option->nonpositional() ? model.options : model.arguments).push_back(optionOf(*option));
  }
  for (const HelpEntry& argument : help.arguments) {
    model.arguments.push_back({{}, valueOf(argument.term), argument.text, false, false});
  }
  model.help = help;
  return model;
}

ProgramModel modelOf(const CLI::App& app, const std::map<const CLI::App*, CommandHelp>& helps) {
  const auto withHelp = [&helps](const CLI::App& one) {
    const auto help = helps.find(&one);
    return help == helps.end() ? commandOf(one) : commandOf(one, help->second);
  };
  ProgramModel model{withHelp(app), {}, app.version()};
  for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; })) {
    if (!command->get_group().empty()) model.commands.push_back(withHelp(*command));
  }
  return model;
}

}  // namespace genostat::common
