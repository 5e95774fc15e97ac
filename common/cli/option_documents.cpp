#include "common/cli/option_documents.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>
#include <sstream>
#include <string_view>
#include <utility>

#include "common/cli/program_model.h"

namespace genostat::common {

namespace {

struct DocumentForm {
  std::string_view name;
  std::string (*make)(const ProgramModel&);
};

constexpr std::array<DocumentForm, 3> kCompletionForms = {{
    {"bash", bashCompletion},
    {"zsh", zshCompletion},
    {"fish", fishCompletion},
}};

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
    value.file = value.file || word.starts_with("FILE") || word.starts_with("PATH");
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

void takeFooter(const std::string& footer, CommandModel& command) {
  std::istringstream lines(footer);
  SectionModel* section = nullptr;
  bool paragraphOpen = false;
  for (std::string line; std::getline(lines, line);) {
    const bool indented = line.starts_with("  ");
    if (line.empty()) {
      section = nullptr;
      paragraphOpen = false;
    } else if (!indented && !paragraphOpen && line.ends_with(':')) {
      line.pop_back();
      section = &command.sections.emplace_back(SectionModel{line, {}});
    } else if (section != nullptr) {
      section->lines.push_back(line);
    } else if (paragraphOpen) {
      command.paragraphs.back() += ' ' + line;
    } else {
      command.paragraphs.push_back(line);
      paragraphOpen = true;
    }
  }
}

}  // namespace

CommandModel commandOf(const CLI::App& app) {
  CommandModel model;
  model.name = app.get_name();
  model.description = app.get_description();
  for (const CLI::Option* option : app.get_options()) {
    if (option->get_group().empty()) continue;
    (option->nonpositional() ? model.options : model.arguments).push_back(optionOf(*option));
  }
  takeFooter(app.get_footer(), model);
  return model;
}

ProgramModel modelOf(const CLI::App& app) {
  ProgramModel model;
  model.program = commandOf(app);
  for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; })) {
    if (!command->get_group().empty()) model.commands.push_back(commandOf(*command));
  }
  model.version = app.version();
  return model;
}

void offerDocuments(CLI::App& program, std::string seeAlso) {
  // As the answer to --version, which is shown with a line break at its end.
  const auto show = [](std::string document) {
    document.pop_back();
    throw CLI::CallForVersion(document, 0);
  };
  const auto generate = [&program, show, seeAlso = std::move(seeAlso)](const std::string& form) {
    const ProgramModel model = modelOf(program);
    if (form == "man") show(manualPage(model, seeAlso));
    for (const DocumentForm& completion : kCompletionForms) {
      if (form == completion.name) show(completion.make(model));
    }
    throw CLI::ValidationError("--generate", "expected man, bash, zsh or fish");
  };
  program.add_option_function<std::string>("--generate", generate)->group("");
}

}  // namespace genostat::common
