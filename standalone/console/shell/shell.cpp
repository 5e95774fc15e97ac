#include "standalone/console/shell/shell.h"

#include <chrono>
#include <cstdio>
#include <thread>
#include <utility>

#include "platform/environment.h"
#include "platform/path_text.h"
#include "platform/running_program.h"
#include "standalone/console/exit_status.h"
#include "standalone/console/session_setup.h"
#include "standalone/console/shell/candidate_list.h"
#include "standalone/console/shell/completion.h"
#include "standalone/console/shell/working.h"
#include "standalone/language/translation.h"
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
  view_.beforeWriting([this, reader = std::this_thread::get_id()] {
    if (std::this_thread::get_id() == reader) editor_->hideLine();
  });
}

void Shell::begin() {
  prepareOutputs(options_.session, view_, translated("Results"));
  if (editor_->isInteractive()) view_.showProgress(false);
  session_.emplace(sessionOptions(options_.session), view_, view_.document());
  Phase before = Phase::Starting;
  if (phase_.compare_exchange_strong(before, Phase::Running)) return;
  while (true) {
    std::this_thread::sleep_for(std::chrono::hours(1));
  }
}

void Shell::interrupt(platform::Interrupt kind) {
  Phase before = Phase::Starting;
  if (phase_.compare_exchange_strong(before, Phase::Interrupted) || before == Phase::Interrupted) {
    editor_->restoreTerminal();
    platform::exitNow(kInterrupted);
  }
  if (kind == platform::Interrupt::Key && editor_->isInteractive()) {
    stopped_ = true;
    session_->stop();
    if (!working_) editor_->interrupt();
    return;
  }
  if (!ending_.exchange(true)) {
    editor_->restoreTerminal();
    view_.endProgress();
    // The prompt's line is not ours any more.
    if (editor_->isInteractive()) std::fputc('\n', stderr);
  }
  session_->interrupt();
}

int Shell::run() {
  const bool interactive = editor_->isInteractive();
  if (interactive) {
    view_.showAnswer(translated("genostat {1}. Type help for help, quit to leave.", {GENOSTAT_VERSION}));
  }
  while (true) {
    if (interactive && input_.empty()) runEndedJobs();
    const LineEditor::Input input = editor_->read(input_.empty() ? kPrompt : kContinuation);
    view_.fitToTerminal();
    if (takeInput(input)) break;
  }
  // What jobs that have ended still want; without a terminal, what all of them want.
  if (interactive) {
    const Working working(*this);
    session_->finishJobs();
  } else {
    session_->finishJobs();
  }
  const bool succeeded = session_->close() && !failed_;
  const bool written = view_.finish();
  return written && (interactive || succeeded) ? kSuccess : kFailure;
}

bool Shell::idle(bool lineIsEmpty) {
  session_->followJobs(std::chrono::milliseconds(0));
  if (!editor_->isInteractive()) return false;
  const bool free = lineIsEmpty && input_.empty() && !asking_;
  if (free && session_->canRunEndedJobs()) return true;
  if (!free) tellOfHeldResults();
  return false;
}

void Shell::tellOfHeldResults() {
  const std::size_t held = session_->endedJobCount();
  if (held > heldResultsTold_) view_.showNotice(translated("results are shown when nothing is being typed"));
  heldResultsTold_ = held;
}

void Shell::runEndedJobs() {
  if (!session_->canRunEndedJobs()) return;
  const Working working(*this);
  while (session_->canRunEndedJobs() && !stopped_) {
    runEndedJob();
  }
}

// Its syntax chooses the active dataset, which the user may have chosen otherwise.
void Shell::runEndedJob() {
  const Dataset* before = session_->datasets().active();
  session_->runEndedJob();
  session_->followJobs(std::chrono::milliseconds(0));
  heldResultsTold_ = session_->endedJobCount();
  const Dataset* active = session_->datasets().active();
  if (before == nullptr || active == before || active == nullptr) return;
  view_.showNotice(translated("the active dataset is now {1}", {active->name}));
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
  const FirstWord first = classifyFirstWord(line, session_->commandNames());
  switch (first.kind) {
    case FirstWord::Kind::Empty:
      return false;
    case FirstWord::Kind::Shell:
    case FirstWord::Kind::Misspelt:
      remember(line);
      return runWord(first, line);
    case FirstWord::Kind::Unknown:
      // A person is told at once; elsewhere the lines up to the end of the command belong to it.
      if (editor_->isInteractive()) {
        remember(line);
        return runWord(first, line);
      }
      [[fallthrough]];
    case FirstWord::Kind::Command:
      break;
  }
  if (input_.add(line, lineNumber_)) runInput();
  return false;
}

void Shell::runInput() {
  const std::string text = input_.text();
  const std::size_t firstLine = input_.firstLine();
  input_.clear();
  remember(std::string_view(text).substr(0, text.find_last_not_of('\n') + 1));
  runSyntax(text, firstLine);
}

void Shell::runSyntax(const std::string& text, std::size_t firstLine) {
  const Working working(*this);
  SourceText source{"<shell>", text};
  // Errors name the lines of what is piped in.
  if (!editor_->isInteractive()) source = {"<stdin>", std::string(firstLine - 1, '\n') + text};
  session_->run(std::make_shared<const SourceText>(std::move(source)));
}

void Shell::remember(std::string_view entry) {
  if (options_.noHistory || editor_->remember(std::string(entry))) return;
  view_.showNotice(
      translated("warning: the history cannot be kept in \"{1}\"", {platform::pathToUtf8(historyFile())}));
}

platform::Completion Shell::complete(std::string_view line, std::size_t cursor) {
  if (asking_) return {};
  CompletionSources sources;
  sources.commands = session_->commandNames();
  if (const Dataset* active = session_->datasets().active()) {
    for (const Column& column : active->columns) {
      sources.variables.push_back(column.name);
    }
  }
  for (const auto& dataset : session_->datasets().all()) {
    if (!dataset->name.empty()) sources.datasets.push_back(dataset->name);
  }
  for (const JobStatus& job : session_->openJobs()) {
    sources.jobs.push_back(job.name);
  }
  sources.expectedBehind = [this](const std::string& text) { return session_->expectedBehind(text); };
  return completeShellLine(sources, input_.text(), line, cursor);
}

}  // namespace genostat::standalone
