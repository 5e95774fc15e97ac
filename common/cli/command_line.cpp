#include "common/cli/command_line.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <system_error>
#include <utility>

#include "common/cli/help_text.h"
#include "common/cli/program_model.h"

namespace genostat::common {

namespace {

// Before everything that may be wrong: a person who asks for help gets it.
bool asksForHelp(const std::vector<std::string>& arguments) {
  for (const std::string& argument : arguments) {
    if (argument == "--") return false;
    if (argument == "-h" || argument == "--help") return true;
  }
  return false;
}

}  // namespace

int showAnswer(const Answer& answer, int outputFailed) {
  std::FILE* stream = answer.status == 0 ? stdout : stderr;
  const bool written = std::fputs(answer.text.c_str(), stream) >= 0 && std::fflush(stream) == 0;
  return written || answer.status != 0 ? answer.status : outputFailed;
}

Answer wrongUsage(const std::string& message, const std::string& program, Translate translated) {
  return {translated("error: {1}", {message}) + '\n' + translated("Try {1}.", {'"' + program + " --help\""}) +
              '\n',
          kWrongUsage};
}

CommandLine::CommandLine(Program program, CommandHelp help)
    : program_(std::move(program)), app_(std::make_unique<CLI::App>(program_.description, program_.name)) {
  prepare(*app_);
  helps_.emplace(app_.get(), std::move(help));
  app_->add_option_function<std::string>("--generate", [this](const std::string& form) { generate(form); })
      ->group("");
}

CommandLine::~CommandLine() = default;

Command CommandLine::addCommand(const char* name, const std::string& description, CommandHelp help) {
  CLI::App& command = *app_->add_subcommand(name, description);
  prepare(command);
  helps_.emplace(&command, std::move(help));
  return {command, program_.translated};
}

void CommandLine::prepare(CLI::App& command) const {
  const Translate translated = program_.translated;
  command.set_help_flag("-h,--help", translated("show this help and exit", {}));
  command.set_version_flag("--version", std::string(program_.name) + ' ' + program_.version,
                           translated("show the version and exit", {}));
  // A path that starts with a slash is no option, on no system.
  command.allow_windows_style_options(false);
  // So that the error can name what was meant.
  command.allow_extras();
}

std::optional<Answer> CommandLine::parse(std::vector<std::string> arguments) {
  const Translate translated = program_.translated;
  if (arguments.empty()) return Answer{help(), kWrongUsage};
  if (arguments.front() == "help") {
    arguments.erase(arguments.begin());
    arguments.emplace_back("--help");
  }
  const bool helpWanted = asksForHelp(arguments);
  for (CLI::App* command : app_->get_subcommands([](const CLI::App*) { return true; })) {
    // Before the checks.
    for (CLI::Option* option : command->get_options()) {
      option->transform(givenArgument);
    }
  }
  std::transform(arguments.begin(), arguments.end(), arguments.begin(), protectedArgument);
  // The library takes the arguments from the back.
  std::reverse(arguments.begin(), arguments.end());
  const auto faultWith = [&](const CLI::ParseError* error) {
    return argumentFault(*app_, error, program_.commandForPath, translated);
  };
  ArgumentFault fault;
  try {
    app_->parse(std::move(arguments));
    fault = faultWith(nullptr);
  } catch (const CLI::CallForHelp&) {
    fault = faultWith(nullptr);
  } catch (const CLI::CallForVersion&) {
    if (!document_.empty()) return Answer{document_, 0};
    return Answer{app_->version() + '\n' + translated("Licence: MIT, the Genostat authors", {}) + '\n', 0};
  } catch (const CLI::ParseError& error) {
    fault = faultWith(&error);
  }
  // The library would also take it for an option's value. "genostat hlep --help" asks for the help of a
  // command that does not exist.
  if (helpWanted && !fault.unknownCommand) return Answer{help(), 0};
  const CLI::App& used = usedCommand(*app_);
  const bool named = &used != app_.get();
  if (!fault.message.empty()) {
    return wrongUsage(fault.message, program_.name + (named ? ' ' + used.get_name() : std::string()),
                      translated);
  }
  if (!named) return Answer{help(), kWrongUsage};
  return std::nullopt;
}

std::string CommandLine::help() const {
  const CLI::App& used = usedCommand(*app_);
  return helpText(modelOf(*app_, helps_), &used == app_.get() ? std::string() : used.get_name(),
                  program_.translated);
}

void CommandLine::generate(const std::string& form) {
  const ProgramModel model = modelOf(*app_, helps_);
  if (form == "man") {
    document_ = manualPage(model, program_.seeAlso);
  } else if (form == "bash") {
    document_ = bashCompletion(model);
  } else if (form == "zsh") {
    document_ = zshCompletion(model);
  } else if (form == "fish") {
    document_ = fishCompletion(model);
  } else {
    throw CLI::ValidationError("--generate", "expected man, bash, zsh or fish");
  }
  // Ends the parsing as --version does.
  throw CLI::CallForVersion({}, 0);
}

}  // namespace genostat::common
