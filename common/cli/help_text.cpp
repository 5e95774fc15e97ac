#include "common/cli/help_text.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>

#include "common/cli/columns.h"
#include "common/cli/shell_words.h"
#include "common/text/utf8.h"
#include "platform/terminal.h"

namespace genostat::common {

namespace {

constexpr std::size_t kIndent = 2;
constexpr std::size_t kGap = 2;
constexpr std::size_t kWidestTerm = 26;

std::size_t columnsOf(std::string_view text) {
  return static_cast<std::size_t>(displayWidth(text));
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

std::string entries(const std::string& title, const std::vector<HelpEntry>& list, std::size_t width) {
  if (list.empty()) return {};
  std::size_t longest = 0;
  for (const HelpEntry& one : list) {
    const std::size_t columns = columnsOf(one.term);
    // Few terms are that long; they need not cost the others their room.
    if (columns <= std::min(kWidestTerm, width / 3)) longest = std::max(longest, columns);
  }
  const std::size_t column = longest == 0 ? 3 * kIndent : kIndent + longest + kGap;
  std::string out = '\n' + title + ":\n";
  for (const HelpEntry& one : list) {
    out += entry(one.term, one.text, column, width);
  }
  return out;
}

std::vector<HelpEntry> optionEntries(const std::vector<OptionModel>& options) {
  std::vector<HelpEntry> list;
  for (const OptionModel& option : options) {
    std::string term = joinWords(option.names, ", ");
    if (!option.value.text.empty()) term += (term.empty() ? "" : " ") + option.value.text;
    list.push_back({term + (option.names.empty() && option.repeated ? "..." : ""), option.description});
  }
  return list;
}

// Command lines with what they do beside them, or below where that needs too much room.
std::string commandLines(const HelpSection& section, std::size_t width) {
  std::string out = '\n' + section.title + ":\n";
  const std::vector<std::string> lines = alignedEntries(section.entries);
  if (std::ranges::all_of(lines, [width](const std::string& line) { return columnsOf(line) <= width; })) {
    return out + joinWords(lines, "\n") + '\n';
  }
  for (const HelpEntry& one : section.entries) {
    out += std::string(kIndent, ' ') + wrapped(wordsOf(one.term, true), kIndent, 3 * kIndent, width, " \\");
    if (!one.text.empty()) {
      out +=
          std::string(3 * kIndent, ' ') + wrapped(wordsOf(one.text, false), 3 * kIndent, 3 * kIndent, width);
    }
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

// Each form that a command line may have, where `command` is the program or one of its commands.
std::vector<std::string> usesOf(const ProgramModel& model, const CommandModel& command) {
  const std::string& program = model.program.name;
  if (&command != &model.program) return {program + ' ' + command.name + " [OPTIONS]" + argumentUse(command)};
  std::vector<std::string> forms;
  for (const CommandModel& one : model.commands) {
    forms.push_back(program + ' ' + one.name + " [OPTIONS]" + argumentUse(one));
  }
  if (!command.arguments.empty()) forms.push_back(program + argumentUse(command));
  return forms;
}

// The columns that help may take.
std::size_t helpWidth() {
  const int wanted = columnsWanted();
  platform::Terminal terminal = platform::standardOutputTerminal();
  // A pager shows it in the terminal that errors go to.
  if (!terminal.isTerminal) terminal = platform::standardErrorTerminal();
  return static_cast<std::size_t>(std::clamp(wanted > 0 ? wanted : terminal.width, 40, 100));
}

}  // namespace

std::vector<std::string> alignedEntries(const std::vector<HelpEntry>& entries) {
  std::size_t longest = 0;
  for (const HelpEntry& one : entries) {
    if (!one.text.empty()) longest = std::max(longest, columnsOf(one.term));
  }
  std::vector<std::string> lines;
  for (const HelpEntry& one : entries) {
    std::string& line = lines.emplace_back(std::string(kIndent, ' ') + one.term);
    if (!one.text.empty()) line.append(longest - columnsOf(one.term) + kGap, ' ').append(one.text);
  }
  return lines;
}

std::string helpText(const ProgramModel& model, const std::string& name, Translate translated) {
  const std::size_t width = helpWidth();
  const auto named = std::ranges::find(model.commands, name, &CommandModel::name);
  const bool isProgram = named == model.commands.end();
  const CommandModel& command = isProgram ? model.program : *named;
  std::string out = wrapped(wordsOf(asSentence(command.description), false), 0, 0, width) + '\n';
  std::string label = translated("Usage", {}) + ": ";
  const std::size_t column = columnsOf(label);
  for (const std::string& use : usesOf(model, command)) {
    out += label + wrapped(wordsOf(use, false), column, column + kIndent, width);
    label.assign(column, ' ');
  }
  out += entries(translated("Arguments", {}), optionEntries(command.arguments), width);
  out += entries(translated("Options", {}), optionEntries(command.options), width);
  std::vector<HelpEntry> commands;
  for (const CommandModel& one : model.commands) {
    if (isProgram) commands.push_back({one.name, one.description});
  }
  out += entries(translated("Commands", {}), commands, width);
  for (const std::string& paragraph : command.help.paragraphs) {
    out += '\n' + wrapped(wordsOf(paragraph, false), 0, 0, width);
  }
  for (const HelpSection& section : command.help.sections) {
    out += section.commands ? commandLines(section, width) : entries(section.title, section.entries, width);
  }
  return out;
}

}  // namespace genostat::common
