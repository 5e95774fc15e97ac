#include "common/cli/help_text.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "common/cli/columns.h"
#include "common/cli/program_model.h"
#include "common/cli/shell_words.h"
#include "platform/terminal.h"

namespace genostat::common {

namespace {

constexpr std::size_t kIndent = 2;
constexpr std::size_t kGap = 2;
constexpr std::size_t kWidestTerm = 26;

// Characters, each of which is taken to be one column wide.
std::size_t columnsOf(std::string_view text) {
  return static_cast<std::size_t>(std::count_if(
      text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
}

// The words of a text; what stands in single quotes is one word where `quotes` says so.
std::vector<std::string> wordsOf(std::string_view text, bool quotes) {
  std::vector<std::string> words;
  std::string word;
  bool quoted = false;
  for (const char character : text) {
    if (quotes && character == '\'') quoted = !quoted;
    if (character != ' ' || quoted) {
      word += character;
    } else if (!word.empty()) {
      words.push_back(std::exchange(word, {}));
    }
  }
  if (!word.empty()) words.push_back(word);
  return words;
}

// Text from the column `used` on, broken before `width`; further lines begin at `indent`. `broken` ends the
// lines that go on. A longer word stands by itself and reaches over the edge.
std::string wrapped(const std::vector<std::string>& words, std::size_t used, std::size_t indent,
                    std::size_t width, std::string_view broken = {}) {
  std::string out;
  bool first = true;
  for (const std::string& word : words) {
    const std::size_t columns = columnsOf(word);
    if (!first && used + 1 + columns + broken.size() > width) {
      out += std::string(broken) + '\n' + std::string(indent, ' ');
      used = indent;
    } else if (!first) {
      out += ' ';
      ++used;
    }
    out += word;
    used += columns;
    first = false;
  }
  return out + '\n';
}

// A term and what it means, beside it from `column` on where there is room.
std::string entry(const std::string& term, const std::string& meaning, std::size_t column,
                  std::size_t width) {
  std::string out = std::string(kIndent, ' ') + term;
  if (meaning.empty()) return out + '\n';
  if (kIndent + columnsOf(term) + kGap > column) {
    out += '\n' + std::string(column, ' ');
  } else {
    out += std::string(column - kIndent - columnsOf(term), ' ');
  }
  return out + wrapped(wordsOf(meaning, false), column, column, width);
}

struct Entry {
  std::string term;
  std::string meaning;
};

std::string entries(const std::string& title, const std::vector<Entry>& list, std::size_t width) {
  if (list.empty()) return {};
  std::size_t longest = 0;
  for (const Entry& one : list) {
    const std::size_t columns = columnsOf(one.term);
    // Few terms are that long; they need not cost the others their room.
    if (columns <= std::min(kWidestTerm, width / 3)) longest = std::max(longest, columns);
  }
  const std::size_t column = longest == 0 ? 3 * kIndent : kIndent + longest + kGap;
  std::string out = '\n' + title + ":\n";
  for (const Entry& one : list) {
    out += entry(one.term, one.meaning, column, width);
  }
  return out;
}

std::vector<Entry> optionEntries(const std::vector<OptionModel>& options) {
  std::vector<Entry> list;
  for (const OptionModel& option : options) {
    std::string term = joinWords(option.names, ", ");
    if (!option.value.text.empty()) term += (term.empty() ? "" : " ") + option.value.text;
    list.push_back({term + (option.names.empty() && option.repeated ? "..." : ""), option.description});
  }
  return list;
}

// The lines of a footer's section, an entry's further lines joined to it.
std::vector<std::string> joinedLines(const SectionModel& section) {
  std::vector<std::string> lines;
  for (const std::string& line : section.lines) {
    const std::size_t start = line.find_first_not_of(' ');
    if (start > kIndent && start != std::string::npos && !lines.empty()) {
      lines.back() += ' ' + line.substr(start);
    } else {
      lines.push_back(line);
    }
  }
  return lines;
}

std::string sectionText(const SectionModel& section, const std::string& program, std::size_t width) {
  std::string out = '\n' + section.title + ":\n";
  const auto fits = [width](const std::string& line) { return columnsOf(line) <= width; };
  if (std::ranges::all_of(section.lines, fits)) {
    for (const std::string& line : section.lines) {
      out += line + '\n';
    }
    return out;
  }
  std::vector<Entry> list;
  for (const std::string& line : joinedLines(section)) {
    const std::size_t start = std::min(line.find_first_not_of(' '), line.size());
    const std::size_t gap = line.find("  ", start);
    if (gap != std::string::npos) {
      list.push_back({line.substr(start, gap - start), line.substr(line.find_first_not_of(' ', gap))});
    } else {
      list.push_back({line.substr(start), {}});
    }
  }
  const bool commands = std::ranges::any_of(
      list, [&](const Entry& one) { return one.term.find(program) != std::string::npos; });
  if (!commands) return entries(section.title, list, width);
  for (const Entry& one : list) {
    out += std::string(kIndent, ' ') + wrapped(wordsOf(one.term, true), kIndent, 3 * kIndent, width, " \\");
    if (!one.meaning.empty())
      out += std::string(3 * kIndent, ' ') +
             wrapped(wordsOf(one.meaning, false), 3 * kIndent, 3 * kIndent, width);
  }
  return out;
}

std::string argumentUse(const CommandModel& command) {
  std::string use;
  for (const OptionModel& argument : command.arguments) {
    use += ' ' + argument.value.text + (argument.repeated ? "..." : "");
  }
  return use;
}

class Formatter : public CLI::FormatterBase {
 public:
  Formatter(std::function<int()> width, HelpWords words)
      : width_(std::move(width)), words_(std::move(words)) {}

  std::string make_help(const CLI::App* app, std::string, CLI::AppFormatMode) const override {
    const auto width = static_cast<std::size_t>(std::max(1, width_()));
    const ProgramModel model = modelOf(*app);
    const CommandModel& command = model.program;
    const CLI::App* parent = app->get_parent();
    const std::string program = (parent != nullptr ? parent : app)->get_name();
    const std::string name = parent != nullptr ? program + ' ' + command.name : program;
    std::string out = wrapped(wordsOf(asSentence(command.description), false), 0, 0, width) + '\n';
    std::string label = words_.usage + ": ";
    const std::size_t column = columnsOf(label);
    for (const std::string& use : uses(model, name)) {
      out += label + wrapped(wordsOf(use, false), column, column + kIndent, width);
      label.assign(column, ' ');
    }
    out += entries(words_.arguments, optionEntries(command.arguments), width);
    out += entries(words_.options, optionEntries(command.options), width);
    std::vector<Entry> commands;
    for (const CommandModel& one : model.commands) {
      commands.push_back({one.name, one.description});
    }
    out += entries(words_.commands, commands, width);
    for (const std::string& paragraph : command.paragraphs) {
      out += '\n' + wrapped(wordsOf(paragraph, false), 0, 0, width);
    }
    for (const SectionModel& section : command.sections) {
      out += sectionText(section, program, width);
    }
    return out;
  }

 private:
  // Each form that a command line may have.
  static std::vector<std::string> uses(const ProgramModel& model, const std::string& name) {
    std::vector<std::string> forms;
    for (const CommandModel& one : model.commands) {
      forms.push_back(name + ' ' + one.name + " [OPTIONS]" + argumentUse(one));
    }
    if (model.commands.empty() || !model.program.arguments.empty()) {
      forms.push_back(name + (model.commands.empty() ? " [OPTIONS]" : "") + argumentUse(model.program));
    }
    return forms;
  }

  std::function<int()> width_;
  HelpWords words_;
};

}  // namespace

void shapeHelp(CLI::App& program, std::function<int()> width, HelpWords words) {
  program.formatter(std::make_shared<Formatter>(std::move(width), std::move(words)));
}

int helpWidth() {
  const int wanted = columnsWanted();
  platform::Terminal terminal = platform::standardOutputTerminal();
  // A pager shows it in the terminal that errors go to.
  if (!terminal.isTerminal) terminal = platform::standardErrorTerminal();
  return std::clamp(wanted > 0 ? wanted : terminal.width, 40, 100);
}

}  // namespace genostat::common
