#include "standalone/console/batch_run.h"

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iostream>
#include <memory>
#include <optional>
#include <stdexcept>
#include <system_error>
#include <thread>
#include <utility>

#include "platform/program.h"
#include "standalone/console/console_view.h"
#include "standalone/console/exit_status.h"
#include "standalone/session/session.h"
#include "standalone/session/text_file.h"

namespace genostat::console {

namespace {

using std::filesystem::path;

struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// The interrupt handler keeps it until the program ends.
struct BatchRun {
  explicit BatchRun(std::unique_ptr<ConsoleView> shown) : view(std::move(shown)) {}

  const std::unique_ptr<ConsoleView> view;
  std::optional<standalone::Session> session;
  enum class Phase { Starting, Running, Interrupted };
  std::atomic<Phase> phase{Phase::Starting};

  // The session may be interrupted from now on.
  void begin() {
    Phase before = Phase::Starting;
    if (phase.compare_exchange_strong(before, Phase::Running)) return;
    while (true) {
      std::this_thread::sleep_for(std::chrono::hours(1));
    }
  }

  void interrupt() {
    Phase before = Phase::Starting;
    const bool early = phase.compare_exchange_strong(before, Phase::Interrupted);
    if (early || before == Phase::Interrupted) platform::exitNow(kInterrupted);
    session->interrupt();
  }
};

path absolutePath(const std::string& utf8) {
  if (utf8.empty()) return {};
  const path given = platform::pathFromUtf8(utf8);
  std::error_code error;
  path absolute = std::filesystem::absolute(given, error);
  return error ? given : absolute.lexically_normal();
}

// The system's choice even when there is no such folder, so that an error can name it.
path systemTemporaryFolder() {
  std::error_code missing;
  path folder = std::filesystem::temp_directory_path(missing);
  if (!missing) return folder;
  for (const char* name : {"TMPDIR", "TMP", "TEMP"}) {
    if (const char* value = std::getenv(name)) return platform::pathFromNarrow(value);
  }
  return "/tmp";
}

standalone::SessionOptions sessionOptions(const RunOptions& options) {
  standalone::SessionOptions session;
  session.moduleFolder = platform::programFolder();
  session.folders.temporary = absolutePath(options.temporaryFolder);
  if (session.folders.temporary.empty()) {
    // Everybody's folder.
    session.folders.temporary = systemTemporaryFolder();
    session.privateTemporaryFolder = true;
  }
  session.folders.installation = absolutePath(options.homeFolder);
  if (session.folders.installation.empty()) session.folders.installation = session.moduleFolder;
  session.folders.strings = absolutePath(options.stringsFolder);
  std::error_code ignored;
  if (!options.stringsFolder.empty() && !std::filesystem::is_directory(session.folders.strings, ignored)) {
    throw UsageError("the folder of string tables \"" + options.stringsFolder + "\" does not exist");
  }
  session.interactive = !options.commandLineMode;
  session.eventsFile = absolutePath(options.eventsFile);
  session.csvFolder = absolutePath(options.csvFolder);
  return session;
}

standalone::SourcePtr readSyntax(const std::string& file) {
  const bool fromStream = file == "-";
  const std::string name = fromStream ? "<stdin>" : file;
  standalone::TextFile text = fromStream ? standalone::readTextStream(std::cin, name)
                                         : standalone::readTextFile(platform::pathFromUtf8(file));
  if (!text.error.empty()) throw UsageError(text.error);
  return std::make_shared<const standalone::SourceText>(standalone::SourceText{name, std::move(text.text)});
}

// What heads the report: the syntax file's name without its ending.
std::string reportTitle(const std::string& file) {
  return file == "-" ? "Results" : platform::pathToUtf8(platform::pathFromUtf8(file).stem());
}

// Makes sure of the files before the work begins. Throws UsageError, or std::runtime_error for a file that
// cannot be written.
void prepareOutputs(const RunOptions& options, ConsoleView& view, const std::string& title) {
  std::optional<OutputFile> results;
  std::optional<OutputFile> report;
  if (!options.outputFile.empty()) results.emplace(options.outputFile);
  if (!options.htmlFile.empty()) report.emplace(options.htmlFile);
  if (!options.file.empty()) {
    const path syntax = platform::pathFromUtf8(options.file);
    if (results && results->isSameAs(syntax)) throw UsageError("--to names the syntax file");
    if (report && report->isSameAs(syntax)) throw UsageError("--html names the syntax file");
  }
  if (results && report && results->isSameAs(platform::pathFromUtf8(options.htmlFile))) {
    throw UsageError("--to and --html name the same file");
  }
  const bool pageOnTerminal =
      options.output == OutputFormat::Html && !results && platform::standardOutputTerminal().isTerminal;
  if (pageOnTerminal) throw UsageError("--output html is nothing for a terminal; add --to FILE");
  view.setFiles(std::move(results), std::move(report), title);
}

int runShown(const RunOptions& options, const std::function<standalone::SourcePtr()>& readText,
             std::unique_ptr<ConsoleView> view, const std::string& title) {
  const auto run = std::make_shared<BatchRun>(std::move(view));
  platform::onInterrupt([run] { run->interrupt(); });
  const auto refuse = [&run](const char* message, int status) {
    run->view->showNotice(std::string("error: ") + message);
    return status;
  };
  try {
    const standalone::SourcePtr syntax = readText();
    prepareOutputs(options, *run->view, title);
    run->session.emplace(sessionOptions(options), *run->view, run->view->document());
    run->begin();
    run->session->run(syntax);
  } catch (const UsageError& error) {
    return refuse(error.what(), kUsageError);
  } catch (const std::runtime_error& error) {
    return refuse(error.what(), kFailure);
  }
  run->session->finishJobs();
  const bool succeeded = run->session->close();
  const bool written = run->view->finish();
  return succeeded && written ? kSuccess : kFailure;
}

}  // namespace

int runBatch(const RunOptions& options) {
  return runShown(
      options, [&] { return readSyntax(options.file); }, std::make_unique<ConsoleView>(options.output),
      reportTitle(options.file));
}

int runText(const RunOptions& options, const standalone::SourcePtr& text, std::unique_ptr<ConsoleView> view,
            const std::string& title) {
  return runShown(
      options, [&] { return text; }, std::move(view), title);
}

}  // namespace genostat::console
