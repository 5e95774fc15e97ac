#include "standalone/console/options.h"

#include <CLI/CLI.hpp>

#include <filesystem>
#include <system_error>
#include <utility>

#include "platform/path_text.h"
#include "standalone/console/session_options.h"
#include "standalone/language/translation.h"

namespace genostat::standalone {

namespace {

std::string commandForPath(const std::string& word) {
  std::error_code ignored;
  const std::filesystem::path path = platform::pathFromUtf8(word);
  if (!std::filesystem::exists(path, ignored)) return {};
  return platform::pathToUtf8(path.extension()) == ".syntax" ? "run" : "qc";
}

common::HelpSection mostUsed() {
  return examples({"genostat qc run1/ --html report.html", "genostat run quality_control.syntax",
                   "genostat run cohort.syntax --html report.html",
                   "genostat run - --output json --csv results < cohort.syntax", "genostat shell"});
}

common::CommandHelp programHelp() {
  return {{translated("\"genostat COMMAND --help\" says more about a command.")},
          {mostUsed(), exitStatusHelp()},
          {}};
}

common::CommandHelp runHelp() {
  return {
      {translated("String tables translate the module's texts: GENOSTAT.txt and global.txt, UTF-8, each line "
                  "a key, a tab and its text."),
       translated(
           "Results go to standard output or the file of --to; notices, warnings and errors to "
           "standard error. When all commands have run, the program waits for the jobs that they "
           "submitted and then runs the syntax that each of them sent back. Ctrl-C cancels all jobs and "
           "removes their files. A second Ctrl-C ends the program at once.")},
      {{translated("Environment"),
        {{"COLUMNS", translated("the width of tables")},
         {"NO_COLOR", translated("turns colours off")},
         {"TMPDIR", translated("where temporary files go, without --temp; TEMP on Windows")}}},
       mostUsed(),
       exitStatusHelp()},
      {}};
}

common::CommandHelp shellHelp() {
  return {
      {translated(
           "Commands end with a period at the end of a line or with a blank line. Jobs run while you type; "
           "what they find is shown when the line is empty. \"help\" lists the other words. Input from a "
           "pipe "
           "or a file runs as it comes, and at its end the program waits for the jobs."),
       translated(
           "Ctrl-C drops what is typed and stops what runs; the jobs go on. The history is kept in "
           "$XDG_STATE_HOME/genostat/history, without that variable below ~/.local/state. Keys can be bound "
           "in ~/.editrc.")},
      {examples({"genostat shell", "genostat shell --html report.html", "echo help | genostat shell"}),
       exitStatusHelp()},
      {}};
}

void addKeptResults(const common::Command& command, RunOptions& options) {
  command.addText("--csv", options.csvFolder, "DIR",
                  translated("keep a copy of each job's result file in this folder"));
}

}  // namespace

std::variant<RunOptions, QcOptions, ShellOptions, common::Answer> parseArguments(
    std::vector<std::string> arguments) {
  RunOptions runOptions;
  QcOptions qcOptions;
  ShellOptions shellOptions;
  common::CommandLine line(
      {.name = "genostat",
       .version = GENOSTAT_VERSION,
       .description = translated("Runs command syntax and the quality-control jobs that it submits."),
       .seeAlso = "genostat-analysis(1)",
       .commandForPath = commandForPath,
       .translated = translated},
      programHelp());
  const common::Command run = line.addCommand("run", translated("run a file of command syntax"), runHelp());
  run.addFile(runOptions.file, translated("file of command syntax; - reads standard input"));
  addSessionOptions(run, runOptions);
  run.app().add_flag("--command-line-mode", runOptions.commandLineMode,
                     translated("run as a host without an interactive client"));
  addKeptResults(run, runOptions);
  const common::Command qc = line.addCommand("qc", translated("check the quality of FASTQ files"), qcHelp());
  addQcOptions(qc, qcOptions);
  const common::Command shell =
      line.addCommand("shell", translated("type commands while jobs run"), shellHelp());
  addSessionOptions(shell, shellOptions.session);
  addKeptResults(shell, shellOptions.session);
  shell.app().add_flag("--no-history", shellOptions.noHistory,
                       translated("neither read nor keep the lines of earlier runs"));

  if (auto answer = line.parse(std::move(arguments))) return *std::move(answer);
  if (qc.app().parsed()) return qcOptions;
  if (shell.app().parsed()) return shellOptions;
  return runOptions;
}

}  // namespace genostat::standalone
