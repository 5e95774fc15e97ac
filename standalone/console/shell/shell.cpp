#include "standalone/console/shell/shell.h"

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>

#include "platform/environment.h"
#include "platform/path_text.h"
#include "platform/suspension.h"
#include "standalone/console/session_setup.h"
#include "standalone/console/shell/commands.h"
#include "standalone/console/shell/completion.h"
#include "standalone/language/translation.h"
#include "standalone/session/exit_status.h"
#include "standalone/syntax/keyword.h"

namespace genostat::standalone {

using platform::LineEditor;

namespace {

constexpr const char* kPrompt = "genostat> ";
constexpr const char* kContinuation = "       -> ";

std::filesystem::path historyFile() {
  std::filesystem::path state = platform::environmentPath("XDG_STATE_HOME");
  if (!state.is_absolute()) {
    const std::filesystem::path home = platform::environmentPath("HOME");
    if (!home.is_absolute()) return {};
    state = home / ".local" / "state";
  }
  return state / "genostat" / "history";
}

}  // namespace

Shell::Shell(const ShellOptions& options) : options_(options), view_(options.session) {
  LineEditor::Options editing;
  if (!options_.noHistory) editing.historyFile = historyFile();
  editing.idle = [this](bool lineIsEmpty) { return idle(lineIsEmpty); };
  editing.complete = [this](std::string_view line, std::size_t cursor) { return complete(line, cursor); };
  editing.list = candidateList;
  editor_ = LineEditor::create(std::move(editing));
  view_.beforeLines([this, reader = std::this_thread::get_id()] {
    if (std::this_thread::get_id() == reader) editor_->hideLine();
  });
}

void Shell::begin() {
  prepareOutputs(options_.session, view_, translated("Results"));
  if (editor_->isInteractive()) view_.showProgress(false);
  start_.open([this] { work_.emplace(options_.session, view_); }, [this] { work_.reset(); });
}

void Shell::interrupt(platform::Interrupt kind) {
  start_.interrupt([this] { editor_->restoreTerminal(); });
  if (kind == platform::Interrupt::Key && editor_->isInteractive() && !inputEnded_) {
    if (!work_->stop()) editor_->interrupt();
    return;
  }
  if (!ending_.exchange(true)) {
    editor_->restoreTerminal();
    view_.endProgress();
    // The prompt's line is not ours any more.
    if (editor_->isInteractive()) std::fputc('\n', stderr);
  }
  work_->session().interrupt();
}

int Shell::run() {
  const bool interactive = editor_->isInteractive();
  if (interactive) {
    view_.showAnswer(translated("genostat {1}. Type help for help, quit to leave.", {GENOSTAT_VERSION}));
  }
  while (true) {
    if (interactive && input_.empty()) work_->runEndedJobs();
    const LineEditor::Input input = editor_->read(input_.empty() ? kPrompt : kContinuation);
    view_.fitToTerminal();
    if (takeInput(input)) break;
  }
  // What jobs that have ended still want; where nobody can answer, what all of them want.
  inputEnded_ = interactive && editor_->hasEnded();
  if (inputEnded_) view_.showProgress(true);
  work_->finishJobs();
  const bool succeeded = work_->session().close() && !failed_;
  const bool written = view_.finish();
  return written && (interactive || succeeded) ? kSuccess : kFailure;
}

bool Shell::idle(bool lineIsEmpty) {
  work_->followJobs();
  if (!editor_->isInteractive()) return false;
  const bool free = lineIsEmpty && input_.empty() && !asking_;
  if (!free) work_->announceHeldResults();
  return free && work_->jobs().canRunEnded();
}

bool Shell::takeInput(const LineEditor::Input& input) {
  switch (input.kind) {
    case LineEditor::Input::Kind::Line:
      return takeLine(input.text);
    case LineEditor::Input::Kind::Interrupted:
      input_.clear();
      return false;
    case LineEditor::Input::Kind::Woken:
      return false;
    case LineEditor::Input::Kind::End:
      break;
  }
  // A command ends with the text.
  if (!input_.empty()) {
    runInput();
    return false;
  }
  return quit();
}

// A line from the history may be several.
bool Shell::takeLine(std::string_view text) {
  while (true) {
    const std::size_t end = text.find('\n');
    const std::string_view line = text.substr(0, end);
    ++lineNumber_;
    if (input_.empty()) {
      if (takeFirstLine(line)) return true;
    } else if (input_.add(line, lineNumber_)) {
      runInput();
    }
    if (end == std::string_view::npos) return false;
    text.remove_prefix(end + 1);
  }
}

bool Shell::takeFirstLine(std::string_view line) {
  using Kind = FirstWord::Kind;
  const bool typed = editor_->isInteractive();
  const FirstWord first = classifyFirstWord(line, work_->commands().names());
  if (first.kind == Kind::Empty) return false;
  // A person is told at once of an unknown word; elsewhere the lines up to the end of the command belong to
  // it.
  const bool isCommand = first.kind == Kind::Command || (first.kind == Kind::Unknown && !typed);
  if (isCommand) {
    if (input_.add(line, lineNumber_)) runInput();
    return false;
  }
  remember(line);
  const WordOutcome outcome = runShellWord(first, {line, typed ? 1 : lineNumber_, typed}, *work_, view_);
  if (outcome == WordOutcome::Failed) failed_ = true;
  return outcome == WordOutcome::Quit && quit();
}

bool Shell::quit() {
  if (!editor_->isInteractive()) return true;
  work_->followJobs();
  return editor_->hasEnded() || work_->jobs().openJobs().empty() || askToQuit();
}

bool Shell::askToQuit() {
  const std::string question =
      translatedCount(work_->jobs().openJobs().size(), "{1} job has not ended.", "{1} jobs have not ended.") +
      ' ' + translated("Wait, cancel, or go on working?") + " [w/c/g] ";
  asking_ = true;
  const LineEditor::Input answer = editor_->read(question);
  asking_ = false;
  const auto is = [&answer](char small, char large) {
    return answer.text.starts_with(small) || answer.text.starts_with(large);
  };
  if (answer.kind == LineEditor::Input::Kind::Line && is('w', 'W')) {
    work_->waitForJobs();
    return work_->jobs().openJobs().empty() && work_->jobs().endedCount() == 0;
  }
  if (editor_->hasEnded() && answer.kind == LineEditor::Input::Kind::End) return true;
  if (answer.kind != LineEditor::Input::Kind::End && !is('c', 'C')) return false;
  work_->cancelAllJobs();
  return true;
}

void Shell::runInput() {
  const std::string text = input_.text();
  const std::size_t firstLine = input_.firstLine();
  input_.clear();
  remember(std::string_view(text).substr(0, text.find_last_not_of('\n') + 1));
  // Errors name the lines of what is piped in.
  work_->run(editor_->isInteractive() ? SourceText{"<shell>", text}
                                      : SourceText{"<stdin>", std::string(firstLine - 1, '\n') + text});
}

void Shell::remember(std::string_view entry) {
  if (options_.noHistory || editor_->remember(std::string(entry))) return;
  view_.showNotice(
      translated("warning: the history cannot be kept in \"{1}\"", {platform::pathToUtf8(historyFile())}));
}

platform::Completion Shell::complete(std::string_view line, std::size_t cursor) {
  if (asking_) return {};
  CompletionSources sources;
  sources.commands = work_->commands().names();
  sources.variables = work_->variableNames();
  sources.datasets = work_->datasetNames();
  sources.jobs = work_->jobNames();
  sources.expectedAfter = [this](const std::string& text) { return work_->commands().expectedAfter(text); };
  return completeShellLine(sources, input_.text(), line, cursor);
}

int runShell(const ShellOptions& options) {
  // The threads of signals keep it until the program ends.
  const auto shell = std::make_shared<Shell>(options);
  platform::onSuspend([shell] { shell->view().suspend(); });
  platform::onEachInterrupt([shell](platform::Interrupt kind) { shell->interrupt(kind); });
  const auto refuse = [&shell](const char* message, int status) {
    shell->view().showNotice(translated("error: {1}", {message}));
    return status;
  };
  try {
    shell->begin();
  } catch (const UsageError& error) {
    return refuse(error.what(), kUsageError);
  } catch (const std::runtime_error& error) {
    return refuse(error.what(), kFailure);
  }
  return shell->run();
}

}  // namespace genostat::standalone
