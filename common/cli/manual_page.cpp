// Manual pages in the macros of man(7).
#include <algorithm>
#include <cctype>
#include <chrono>
#include <cstdlib>
#include <string_view>

#include "common/cli/help_text.h"
#include "common/cli/program_model.h"
#include "common/text/ascii.h"

namespace genostat::common {

namespace {

// Text that the formatter shows as it is.
std::string roffText(std::string_view text) {
  std::string out;
  for (const char character : text) {
    if (character == '\\') {
      out += "\\e";
    } else if (character == '-') {
      out += "\\-";
    } else if (character == '\n') {
      out += ' ';
    } else {
      out += character;
    }
  }
  const bool control = out.starts_with('.') || out.starts_with('\'');
  return control ? "\\&" + out : out;
}

// Today, or the day that the makers of packages ask for so that each build gives the same bytes.
std::string pageDate() {
  using namespace std::chrono;
  sys_days day = floor<days>(system_clock::now());
  if (const char* epoch = std::getenv("SOURCE_DATE_EPOCH")) {
    day = floor<days>(sys_seconds(seconds(std::strtoll(epoch, nullptr, 10))));
  }
  const year_month_day date(day);
  const auto twoDigits = [](unsigned number) { return (number < 10 ? "0" : "") + std::to_string(number); };
  return std::to_string(static_cast<int>(date.year())) + '-' +
         twoDigits(static_cast<unsigned>(date.month())) + '-' + twoDigits(static_cast<unsigned>(date.day()));
}

// What an option looks like: its names bold, its value italic.
std::string optionTerm(const OptionModel& option) {
  std::string term;
  for (const std::string& name : option.names) {
    if (!term.empty()) term += ", ";
    term += "\\fB" + roffText(name) + "\\fR";
  }
  if (!option.value.text.empty()) {
    if (!term.empty()) term += ' ';
    term += "\\fI" + roffText(option.value.text) + "\\fR";
  }
  return term;
}

std::string optionItems(const std::vector<OptionModel>& options) {
  std::string out;
  for (const OptionModel& option : options) {
    out += ".TP\n" + optionTerm(option) + '\n' + roffText(asSentence(option.description)) + '\n';
  }
  return out;
}

std::string argumentUse(const std::vector<OptionModel>& arguments) {
  std::string out;
  for (const OptionModel& argument : arguments) {
    out += " \\fI" + roffText(argument.value.text) + "\\fR" + (argument.repeated ? "..." : "");
  }
  return out;
}

std::string synopsis(const ProgramModel& model) {
  const std::string program = "\\fB" + roffText(model.program.name);
  std::string out = ".SH SYNOPSIS\n.nf\n";
  for (const CommandModel& command : model.commands) {
    out += program + ' ' + roffText(command.name) + "\\fR [\\fIOPTIONS\\fR]" +
           argumentUse(command.arguments) + '\n';
  }
  if (!model.program.arguments.empty()) out += program + "\\fR" + argumentUse(model.program.arguments) + '\n';
  return out + program + " \\-\\-help\\fR | \\fB\\-\\-version\\fR\n.fi\n";
}

std::string paragraphs(const std::vector<std::string>& texts) {
  std::string out;
  for (const std::string& text : texts) {
    if (!out.empty()) out += ".PP\n";
    out += roffText(text) + '\n';
  }
  return out;
}

std::string sectionBody(const HelpSection& section) {
  std::string out;
  if (section.commands) {
    for (const std::string& line : alignedEntries(section.entries)) {
      out += roffText(line) + '\n';
    }
    return ".nf\n" + out + ".fi\n";
  }
  for (const HelpEntry& entry : section.entries) {
    out += ".TP\n\\fB" + roffText(entry.term) + "\\fR\n" + roffText(entry.text) + '\n';
  }
  return out;
}

// The sections of all commands, each title once, and each entry once within it.
std::vector<HelpSection> mergedSections(const ProgramModel& model) {
  std::vector<HelpSection> merged;
  const auto take = [&merged](const CommandModel& command) {
    for (const HelpSection& section : command.help.sections) {
      auto known = std::ranges::find(merged, section.title, &HelpSection::title);
      if (known == merged.end()) known = merged.insert(known, {section.title, {}, section.commands});
      for (const HelpEntry& entry : section.entries) {
        if (std::ranges::count(known->entries, entry) == 0) known->entries.push_back(entry);
      }
    }
  };
  take(model.program);
  for (const CommandModel& command : model.commands) {
    take(command);
  }
  return merged;
}

}  // namespace

std::string asSentence(std::string text) {
  if (text.empty()) return text;
  text.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(text.front())));
  return text.ends_with('.') ? text : text + '.';
}

std::string manualPage(const ProgramModel& model, const std::string& seeAlso) {
  const CommandModel& program = model.program;
  std::string summary = program.description;
  if (summary.ends_with('.')) summary.pop_back();
  std::string out = ".TH " + roffText(upperCase(program.name)) + " 1 " + pageDate() + " \"" +
                    roffText(model.version) + "\"\n.SH NAME\n" + roffText(program.name) + " \\- " +
                    roffText(summary) + '\n' + synopsis(model);
  out += ".SH DESCRIPTION\n" + roffText(asSentence(program.description)) + '\n';
  if (!program.help.paragraphs.empty()) out += ".PP\n" + paragraphs(program.help.paragraphs);
  out += optionItems(program.arguments);
  out += ".SH OPTIONS\n" + optionItems(program.options);
  if (!model.commands.empty()) out += ".SH COMMANDS\n";
  for (const CommandModel& command : model.commands) {
    out += ".SS \"" + roffText(program.name + ' ' + command.name) + "\"\n" +
           roffText(asSentence(command.description)) + '\n' + optionItems(command.arguments) +
           optionItems(command.options);
    if (!command.help.paragraphs.empty()) out += ".PP\n" + paragraphs(command.help.paragraphs);
  }
  for (const HelpSection& section : mergedSections(model)) {
    out += ".SH \"" + roffText(upperCase(section.title)) + "\"\n" + sectionBody(section);
  }
  if (!seeAlso.empty()) out += ".SH \"SEE ALSO\"\n" + roffText(seeAlso) + '\n';
  return out;
}

}  // namespace genostat::common
