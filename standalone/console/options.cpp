#include "standalone/console/options.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

#include "platform/documents/option_documents.h"
#include "standalone/console/exit_status.h"
#include "standalone/console/session_options.h"
#include "standalone/syntax/diagnostic.h"
#include "standalone/syntax/keyword.h"

namespace genostat::console {

namespace {

constexpr const char* kExamples =
    "Examples:\n"
    "  genostat qc run1/ --html report.html\n"
    "  genostat run quality_control.syntax\n"
    "  genostat run cohort.syntax --html report.html\n"
    "  genostat run - --output json --csv results < cohort.syntax\n"
    "\n";

constexpr const char* kRunHelp =
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
    "\n";

void addRunOptions(CLI::App& run, RunOptions& options) {
  run.add_option("FILE", options.file, "file of command syntax; - reads standard input")
      ->type_name("")
      ->required()
      ->check(notEmpty());
  addSessionOptions(run, options);
  run.add_flag("--command-line-mode", options.commandLineMode, "run as a host without an interactive client");
  addTextOption(run, "--csv", options.csvFolder, "DIR",
                "keep a copy of each job's result file in this folder");
  run.footer(std::string(kRunHelp) + kExamples + kExitStatusHelp);
}

Answer usageError(const std::string& message, const std::string& program) {
  return {"error: " + message + "\nTry \"" + program + " --help\".\n", kUsageError};
}

// What to say of an argument that nothing takes.
std::string describeUnexpected(const std::string& argument, const CLI::App& app, bool subcommandExpected) {
  std::vector<std::string> names;
  std::string what = "unexpected argument ";
  if (argument.size() > 1 && argument.front() == '-') {
    what = "unknown option ";
    for (const CLI::Option* option : app.get_options()) {
      const bool shown = !option->get_group().empty() && !option->get_lnames().empty();
      if (shown) names.push_back("--" + option->get_lnames().front());
    }
  } else if (subcommandExpected) {
    what = "unknown subcommand ";
    for (const CLI::App* subcommand : app.get_subcommands([](const CLI::App*) { return true; })) {
      names.push_back(subcommand->get_name());
    }
  }
  const std::vector<std::string_view> views(names.begin(), names.end());
  const std::string name = argument.substr(0, argument.find('='));
  const auto nearest = standalone::nearestKeyword(name, views);
  const std::string message = what + standalone::quoteForMessage(argument);
  return nearest ? message + "; did you mean " + std::string(*nearest) + "?" : message;
}

}  // namespace

std::variant<RunOptions, QcOptions, Answer> parseArguments(std::vector<std::string> arguments) {
  RunOptions options;
  QcOptions qcOptions;
  CLI::App app("Runs command syntax and the quality-control jobs that it submits.", "genostat");
  const auto answerVersion = [](CLI::App& command) {
    command.set_version_flag("--version", "genostat " GENOSTAT_VERSION, "show the version and exit");
  };
  answerVersion(app);
  app.set_help_flag("-h,--help", "show this help and exit");
  app.footer(std::string(kExamples) + kExitStatusHelp);
  platform::offerDocuments(app, "genostat-analysis(1)");
  // Collected, so that the error can name what was meant.
  app.allow_extras();
  CLI::App& run = *app.add_subcommand("run", "run a file of command syntax");
  run.set_help_flag("-h,--help", "show this help and exit");
  answerVersion(run);
  run.allow_extras();
  addRunOptions(run, options);
  CLI::App& qc = *app.add_subcommand("qc", "check the quality of FASTQ files");
  qc.set_help_flag("-h,--help", "show this help and exit");
  answerVersion(qc);
  qc.allow_extras();
  addQcOptions(qc, qcOptions);

  const bool empty = arguments.empty();
  std::reverse(arguments.begin(), arguments.end());
  const auto used = [&]() -> const CLI::App& { return run.parsed() ? run : qc.parsed() ? qc : app; };
  const auto program = [&] { return &used() == &app ? "genostat" : "genostat " + used().get_name(); };
  const auto unexpected = [&]() -> std::string {
    const std::vector<std::string> rest = used().remaining();
    return rest.empty() ? std::string() : describeUnexpected(rest.front(), used(), &used() == &app);
  };
  try {
    app.parse(std::move(arguments));
  } catch (const CLI::CallForHelp&) {
    return Answer{app.help(), kSuccess};
  } catch (const CLI::CallForVersion& version) {
    return Answer{version.what() + std::string("\n"), kSuccess};
  } catch (const CLI::ParseError& error) {
    // A misspelled option is the likelier cause of whatever else is missing.
    const std::string stray = unexpected();
    return usageError(stray.empty() ? error.what() : stray, program());
  }
  const std::string stray = unexpected();
  if (!stray.empty()) return usageError(stray, program());
  if (empty || &used() == &app) return Answer{app.help(), kUsageError};
  if (qc.parsed()) return qcOptions;
  return options;
}

}  // namespace genostat::console
