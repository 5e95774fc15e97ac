#include "standalone/console/batch_run.h"

#include <atomic>
#include <functional>
#include <iostream>
#include <memory>
#include <optional>
#include <stdexcept>
#include <utility>

#include "platform/interrupts.h"
#include "platform/path_text.h"
#include "platform/suspension.h"
#include "standalone/console/session_setup.h"
#include "standalone/console/start_phase.h"
#include "standalone/console/view/console_view.h"
#include "standalone/language/translation.h"
#include "standalone/procedures/commands.h"
#include "standalone/session/exit_status.h"
#include "standalone/session/session.h"
#include "standalone/syntax/text_file.h"

namespace genostat::standalone {

namespace {

// The interrupt handler keeps it until the program ends.
struct BatchRun {
  explicit BatchRun(std::unique_ptr<ConsoleView> shown) : view(std::move(shown)) {}

  const std::unique_ptr<ConsoleView> view;
  std::optional<Session> session;
  StartPhase start;
  std::atomic<bool> progressEnded{false};

  void interrupt() {
    start.interrupt();
    // Once only: a terminal that takes nothing more must not hold up the next interrupt.
    if (!progressEnded.exchange(true)) view->endProgress();
    session->interrupt();
  }
};

SourcePtr readSyntax(const std::string& file) {
  const bool fromStream = file == "-";
  const std::string name = fromStream ? "<stdin>" : file;
  TextFile text = fromStream ? readTextStream(std::cin, name) : readTextFile(platform::pathFromUtf8(file));
  if (!text.error.empty()) throw UsageError(text.error);
  return std::make_shared<const SourceText>(SourceText{name, std::move(text.text)});
}

// What heads the report: the syntax file's name without its ending.
std::string reportTitle(const std::string& file) {
  return file == "-" ? translated("Results") : platform::pathToUtf8(platform::pathFromUtf8(file).stem());
}

int runShown(const RunOptions& options, const std::function<SourcePtr()>& readText,
             std::unique_ptr<ConsoleView> view, const std::string& title) {
  const auto run = std::make_shared<BatchRun>(std::move(view));
  platform::onSuspend([run] { run->view->suspend(); });
  platform::onEachInterrupt([run](platform::Interrupt) { run->interrupt(); });
  const auto refuse = [&run](const char* message, int status) {
    run->view->showNotice(translated("error: {1}", {message}));
    return status;
  };
  try {
    const SourcePtr syntax = readText();
    prepareOutputs(options, *run->view, title);
    run->start.open(
        [&] {
          run->session.emplace(sessionOptions(options), procedureCommands(), *run->view,
                               run->view->document());
        },
        [&] { run->session.reset(); });
    run->session->run(syntax);
  } catch (const UsageError& error) {
    return refuse(error.what(), kUsageError);
  } catch (const std::runtime_error& error) {
    return refuse(error.what(), kFailure);
  }
  run->session->jobs().finish();
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

int runText(const RunOptions& options, const SourcePtr& text, std::unique_ptr<ConsoleView> view,
            const std::string& title) {
  return runShown(
      options, [&] { return text; }, std::move(view), title);
}

}  // namespace genostat::standalone
