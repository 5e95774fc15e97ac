// A program's command line, defined, parsed and answered in the same way by all programs.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "common/cli/argument_fault.h"
#include "common/cli/command_help.h"
#include "common/text/filled_text.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace genostat::common {

// The exit status of a command line that cannot be followed.
constexpr int kWrongUsage = 2;

// Nothing to run: a text to show, help or an error, and the exit status.
struct Answer {
  std::string text;
  int status = 0;
};

// On standard output, or on standard error where the status is a failure. The status, or `outputFailed` where
// the text could not be written.
int showAnswer(const Answer& answer, int outputFailed);

// "error: MESSAGE" and where there is help on it. `program` includes the command.
Answer wrongUsage(const std::string& message, const std::string& program, Translate translated);

// Why a value that should be one of `words` cannot be taken, with what may have been meant; `choices` is what
// could be said instead.
std::string describeChoice(std::string_view choices, std::string_view found,
                           std::span<const std::string_view> words, Translate translated);

// Adds options to a command, each with a check that speaks to the user. Of an option given more than once the
// last one counts. What is referred to outlives the parsing.
class Command {
 public:
  Command(CLI::App& app, Translate translated) : app_(app), translated_(translated) {}

  CLI::App& app() const { return app_; }

  // A text that is not empty. `type` as ValueModel wants it.
  CLI::Option* addText(const char* name, std::string& value, const char* type,
                       const std::string& description) const;
  // One of `words`, which outlive the parsing, in any case; `take` gets its index.
  CLI::Option* addChoice(const char* name, std::span<const std::string_view> words,
                         const std::string& description, std::function<void(std::size_t)> take) const;
  // A whole number.
  CLI::Option* addCount(const char* name, int least, int most, const std::string& description,
                        std::function<void(int)> take) const;
  // The argument that everything else on the command line is: one name of a file, or at least one.
  CLI::Option* addFile(std::string& file, const std::string& description) const;
  CLI::Option* addFiles(std::vector<std::string>& files, const std::string& description) const;

 private:
  CLI::App& app_;
  Translate translated_;
};

class CommandLine {
 public:
  struct Program {
    const char* name;
    const char* version;
    std::string description;
    std::string seeAlso;  // other manual pages
    CommandForPath commandForPath;
    Translate translated = inEnglish;
  };

  CommandLine(Program program, CommandHelp help);
  ~CommandLine();

  Command addCommand(const char* name, const std::string& description, CommandHelp help);

  // `arguments` are UTF-8, without the program's name. Nothing: one of the commands has been parsed. Beside
  // help and version, which every command has, and the word `help` in front, the hidden option --generate
  // man|bash|zsh|fish prints that document.
  std::optional<Answer> parse(std::vector<std::string> arguments);

 private:
  void prepare(CLI::App& command) const;
  std::string help() const;
  void generate(const std::string& form);

  Program program_;
  std::unique_ptr<CLI::App> app_;
  std::map<const CLI::App*, CommandHelp> helps_;
  std::string document_;  // what --generate asked for
};

}  // namespace genostat::common
