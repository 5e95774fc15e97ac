#include "standalone/console/options.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

#include "common/cli/argument_fault.h"
#include "common/cli/help_text.h"
#include "common/cli/option_documents.h"
#include "platform/path_text.h"
#include "standalone/console/exit_status.h"
#include "standalone/console/session_options.h"
#include "standalone/language/translation.h"
#include "standalone/syntax/diagnostic.h"

namespace genostat::standalone {

namespace {

using common::ArgumentFault;

constexpr const char* kAbout = marked("\"genostat COMMAND --help\" tells more about a command.\n\n");

constexpr const char* kExamples =
    "  genostat qc run1/ --html report.html\n"
    "  genostat run quality_control.syntax\n"
    "  genostat run cohort.syntax --html report.html\n"
    "  genostat run - --output json --csv results < cohort.syntax\n"
    "  genostat shell\n"
    "\n";

constexpr const char* kRunHelp = marked(
    "String tables translate the module's texts: GENOSTAT.txt and global.txt, UTF-8, each line\n"
    "a key, a tab and its text.\n"
    "\n"
    "Results go to standard output or the file of --to; notices, warnings and errors to\n"
    "standard error.\n"
    "When all commands have run, the program waits for the jobs that they submitted and then\n"
    "runs the syntax that each of them sent back. Ctrl-C cancels all jobs and removes their\n"
    "files. A second Ctrl-C ends the program at once.\n"
    "\n"
    "Environment:\n"
    "  COLUMNS   the width of tables\n"
    "  NO_COLOR  turns colours off\n"
    "  TMPDIR    where temporary files go, without --temp; TEMP on Windows\n"
    "\n");

void addRunOptions(CLI::App& run, RunOptions& options) {
  run.add_option("FILE", options.file, translated("file of command syntax; - reads standard input"))
      ->type_name("")
      ->required()
      ->check(notEmpty());
  addSessionOptions(run, options);
  run.add_flag("--command-line-mode", options.commandLineMode,
               translated("run as a host without an interactive client"));
  addTextOption(run, "--csv", options.csvFolder, "DIR",
                translated("keep a copy of each job's result file in this folder"));
  run.footer(translated(kRunHelp) + examplesHelp(kExamples) + translated(kExitStatusHelp));
}

constexpr const char* kShellHelp = marked(
    "Commands end with a period at the end of a line or with a blank line. Jobs run while you\n"
    "type; what they find is shown when the line is empty. \"help\" tells the rest. Input from\n"
    "a pipe or a file runs as it comes, and at its end the program waits for the jobs.\n"
    "\n"
    "Ctrl-C drops what is typed and stops what runs; the jobs go on.\n"
    "The history is kept in $XDG_STATE_HOME/genostat/history, without that variable below\n"
    "~/.local/state. Keys can be bound in ~/.editrc.\n"
    "\n");

constexpr const char* kShellExamples =
    "  genostat shell\n"
    "  genostat shell --html report.html\n"
    "  echo help | genostat shell\n"
    "\n";

void addShellOptions(CLI::App& shell, ShellOptions& options) {
  addSessionOptions(shell, options.session);
  addTextOption(shell, "--csv", options.session.csvFolder, "DIR",
                translated("keep a copy of each job's result file in this folder"));
  shell.add_flag("--no-history", options.noHistory,
                 translated("neither read nor keep the lines of earlier runs"));
  shell.footer(translated(kShellHelp) + examplesHelp(kShellExamples) + translated(kExitStatusHelp));
}

Answer usageError(const std::string& message, const std::string& program) {
  const std::string help = quoteForMessage(program + " --help");
  return {translated("error: {1}", {message}) + '\n' + translated("Try {1}.", {help}) + '\n', kUsageError};
}

std::string withGuess(const std::string& message, const std::string& meant) {
  return meant.empty() ? message : translated("{1}; did you mean {2}?", {message, meant});
}

// `word` stands where a command does.
std::string describeUnknownCommand(const std::string& word, const std::string& meant) {
  const std::string quoted = quoteForMessage(word);
  std::error_code ignored;
  const std::filesystem::path path = platform::pathFromUtf8(word);
  if (meant.empty() && std::filesystem::exists(path, ignored)) {
    const std::string extension = platform::pathToUtf8(path.extension());
    const std::string command = extension == ".syntax" ? "run" : "qc";
    return translated("{1} is no command; did you mean {2}?", {quoted, "genostat " + command + ' ' + word});
  }
  return withGuess(translated("unknown subcommand {1}", {quoted}), meant);
}

std::string describeFault(const ArgumentFault& fault) {
  using Kind = ArgumentFault::Kind;
  const std::string quoted = quoteForMessage(fault.subject);
  switch (fault.kind) {
    case Kind::UnknownOption:
      return withGuess(translated("unknown option {1}", {quoted}), fault.meant);
    case Kind::UnknownCommand:
      return describeUnknownCommand(fault.subject, fault.meant);
    case Kind::UnexpectedArgument:
      return translated("unexpected argument {1}", {quoted});
    case Kind::MissingValue:
      return translated("{1} needs a value: {2}", {fault.subject, fault.detail});
    case Kind::MissingArgument:
      return translated("{1} is missing", {fault.subject});
    case Kind::MissingPartner:
      return translated("{1} requires {2}", {fault.subject, fault.detail});
    case Kind::WrongValue:
      return fault.detail;
    case Kind::None:
      break;
  }
  return {};
}

}  // namespace

std::variant<RunOptions, QcOptions, ShellOptions, Answer> parseArguments(std::vector<std::string> arguments) {
  RunOptions options;
  QcOptions qcOptions;
  ShellOptions shellOptions;
  CLI::App app(translated("Runs command syntax and the quality-control jobs that it submits."), "genostat");
  common::shapeHelp(
      app, common::helpWidth,
      {translated("Usage"), translated("Arguments"), translated("Options"), translated("Commands")});
  // In all commands. Extras are collected, so that the error can name what was meant.
  const auto prepare = [](CLI::App& command) {
    command.set_help_flag("-h,--help", translated("show this help and exit"));
    command.set_version_flag("--version", "genostat " GENOSTAT_VERSION,
                             translated("show the version and exit"));
    command.allow_extras();
  };
  prepare(app);
  app.footer(translated(kAbout) + examplesHelp(kExamples) + translated(kExitStatusHelp));
  common::offerDocuments(app, "genostat-analysis(1)");
  CLI::App& run = *app.add_subcommand("run", translated("run a file of command syntax"));
  prepare(run);
  addRunOptions(run, options);
  CLI::App& qc = *app.add_subcommand("qc", translated("check the quality of FASTQ files"));
  prepare(qc);
  addQcOptions(qc, qcOptions);
  CLI::App& shell = *app.add_subcommand("shell", translated("type commands while jobs run"));
  prepare(shell);
  addShellOptions(shell, shellOptions);

  if (arguments.empty()) return Answer{app.help(), kUsageError};
  if (arguments.front() == "help") {
    arguments.erase(arguments.begin());
    arguments.emplace_back("--help");
  }
  const bool helpWanted = common::asksForHelp(arguments);
  std::reverse(arguments.begin(), arguments.end());
  ArgumentFault fault;
  try {
    app.parse(std::move(arguments));
    fault = common::argumentFault(app, nullptr);
  } catch (const CLI::CallForHelp&) {
    fault = common::argumentFault(app, nullptr);
  } catch (const CLI::CallForVersion& version) {
    return Answer{version.what() + std::string("\n"), kSuccess};
  } catch (const CLI::ParseError& error) {
    fault = common::argumentFault(app, &error);
  }
  // The library would also take it for an option's value. "genostat hlep --help" asks for the help of a
  // command that does not exist.
  if (helpWanted && fault.kind != ArgumentFault::Kind::UnknownCommand) return Answer{app.help(), kSuccess};
  const CLI::App& used = common::usedCommand(app);
  const std::string program = &used == &app ? "genostat" : "genostat " + used.get_name();
  if (fault.kind != ArgumentFault::Kind::None) return usageError(describeFault(fault), program);
  if (qc.parsed()) return qcOptions;
  if (shell.parsed()) return shellOptions;
  if (run.parsed()) return options;
  return Answer{app.help(), kUsageError};
}

}  // namespace genostat::standalone
