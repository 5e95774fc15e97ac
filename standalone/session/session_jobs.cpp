// A session's jobs: their messages, their results, and their cancellation when it is interrupted.
#include <chrono>
#include <system_error>
#include <thread>
#include <utility>

#include "platform/program.h"
#include "standalone/output/display_text.h"
#include "standalone/session/session.h"

namespace genostat::standalone {

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

// How often a waiting session asks whether a job was lost. Messages wake it at once.
constexpr auto kLostJobCheck = 50ms;
// A job cancelled before its process exists is started all the same and cancelled again.
constexpr auto kCancelAgain = 200ms;
constexpr auto kCancelPoll = 10ms;
// How long an interrupted program waits for the command that runs, and for its last notices.
constexpr auto kCommandPatience = 2s;
constexpr auto kNoticePatience = 300ms;
constexpr int kInterruptedStatus = 130;

std::string jobLabel(const std::string& name) {
  return "job '" + (name.empty() ? "(unnamed)" : printableText(name)) + "'";
}

}  // namespace

void Session::showMessages() {
  while (const auto message = adapter_.take(0ms)) {
    onMessage(*message);
  }
  if (!eventsFailureShown_ && adapter_.eventsFailed()) {
    eventsFailureShown_ = true;
    reportError("cannot write the event file \"" + platform::pathToUtf8(options_.eventsFile) + "\"");
  }
}

void Session::onMessage(const ClientMessage& message) {
  for (const JobEvent& event : tracker_.onMessage(message)) {
    if (event.kind == JobEvent::Kind::Ended) {
      onEnded(message);
    } else {
      showJobEvent(event);
    }
  }
  if (message.kind == ClientMessage::Kind::Ended && message.syntax.empty()) leaving_.push_back(message);
}

void Session::showJobEvent(const JobEvent& event) {
  const std::string label = jobLabel(event.jobName);
  switch (event.kind) {
    case JobEvent::Kind::Queued:
      return view_.showNotice(label + " queued");
    case JobEvent::Kind::Running:
      return view_.showNotice(label + " running");
    case JobEvent::Kind::Ended:
      return view_.showNotice(label + " finished");
    case JobEvent::Kind::Cancelled:
      return view_.showNotice(label + " cancelled");
    case JobEvent::Kind::Lost:
      return reportError(label + " could not be started");
  }
}

void Session::onEnded(const ClientMessage& message) {
  const std::filesystem::path csv = platform::pathFromNarrow(message.csvFilePath);
  const std::string failure = failureOf(message);
  if (failure.empty()) {
    showJobEvent({JobEvent::Kind::Ended, message.jobName});
  } else {
    const std::string sentence = csv.empty() ? std::string() : readFailureSentence(csv);
    reportError(jobLabel(message.jobName) + " failed: " + (sentence.empty() ? failure : sentence));
  }
  if (!csv.empty()) removeLeftovers(csv);
  ended_.push_back(message);
}

void Session::finishJobs() {
  // Not as they come: while the module's queue is full, it refuses the commands of end messages.
  waitForJobs();
  while (!ended_.empty()) {
    const ClientMessage message = std::move(ended_.front());
    ended_.pop_front();
    runEndSyntax(message);
    waitForJobs();
  }
}

void Session::waitForJobs() {
  showMessages();
  while (!tracker_.openNames().empty() || !leaving_.empty()) {
    if (interrupted_) waitForProgramEnd();
    if (const auto message = adapter_.take(leaving_.empty() ? kLostJobCheck : kCancelPoll)) {
      onMessage(*message);
    } else {
      checkForLostJobs();
    }
  }
}

void Session::checkForLostJobs() {
  std::set<std::string> unknown;
  for (const std::string& name : tracker_.openNames()) {
    if (!module_.isJobPendingOrRunning(name)) unknown.insert(name);
  }
  // A message that was sent before the module answered counts.
  showMessages();
  for (const JobEvent& event : tracker_.onUnknown(unknown)) {
    showJobEvent(event);
  }
  std::erase_if(leaving_, [this](const ClientMessage& message) {
    if (module_.isJobPendingOrRunning(message.jobName)) return false;
    if (!message.csvFilePath.empty()) removeLeftovers(platform::pathFromNarrow(message.csvFilePath));
    return true;
  });
}

void Session::runEndSyntax(const ClientMessage& message) {
  copyResults(message);
  runCommands(
      std::make_shared<const SourceText>(SourceText{"<" + jobLabel(message.jobName) + ">", message.syntax}));
  const Gate gate = enterCommand();
  if (message.csvFilePath.empty()) return;
  // The syntax removes the result itself, unless its command failed.
  std::error_code ignored;
  std::filesystem::remove(platform::pathFromNarrow(message.csvFilePath), ignored);
  adapter_.forgetCsvFile(message.csvFilePath);
}

void Session::copyResults(const ClientMessage& message) {
  if (options_.csvFolder.empty() || !failureOf(message).empty()) return;
  const Gate gate = enterCommand();
  const std::filesystem::path csv = platform::pathFromNarrow(message.csvFilePath);
  const std::string name = copyNames_.next(message.jobName, platform::pathToUtf8(csv.stem()));
  const std::filesystem::path copy = options_.csvFolder / platform::pathFromUtf8(name + ".csv");
  std::error_code error;
  std::filesystem::create_directories(options_.csvFolder, error);
  if (!error) {
    std::filesystem::copy_file(csv, copy, std::filesystem::copy_options::overwrite_existing, error);
  }
  if (!error) return;
  reportError("cannot copy the results of " + jobLabel(message.jobName) + " to \"" +
              platform::pathToUtf8(copy) + "\": " + error.message());
}

Session::Gate Session::enterCommand() {
  Gate gate(gate_);
  if (interrupted_) {
    gate.unlock();
    waitForProgramEnd();
  }
  return gate;
}

void Session::waitForProgramEnd() {
  while (true) {
    if (const auto message = adapter_.take(1h)) onMessage(*message);
  }
}

void Session::interrupt() {
  if (interrupted_.exchange(true)) platform::exitNow(kInterruptedStatus);
  if (!adapter_.ledger().jobNames.empty()) view_.showNotice("interrupted: cancelling all jobs");
  if (!cancelJobs()) return;
  for (const std::string& file : adapter_.ledger().csvFilePaths) {
    const std::filesystem::path csv = platform::pathFromNarrow(file);
    std::error_code ignored;
    std::filesystem::remove(csv, ignored);
    removeLeftovers(csv);
  }
  adapter_.waitUntilIdle(kNoticePatience);
  platform::exitNow(kInterruptedStatus);
}

// Returns when the module holds no job and no command can submit one. False when the session is
// closed: the program ends by itself.
bool Session::cancelJobs() {
  Gate gate(gate_, std::defer_lock);
  auto nextCancel = Clock::now();
  auto giveUp = Clock::time_point::max();
  while (true) {
    const auto now = Clock::now();
    const bool again = now >= nextCancel;
    if (again) nextCancel = now + kCancelAgain;
    if (cancelKnownJobs(again)) {
      std::this_thread::sleep_for(kCancelPoll);
      continue;
    }
    if (gate.owns_lock()) {
      if (closed_) return false;
      // Kept, so that no further command runs.
      gate.release();
      return true;
    }
    if (giveUp == Clock::time_point::max()) giveUp = now + kCommandPatience;
    if (now >= giveUp) return true;
    // With the gate in hand look again: the command may just have submitted a job.
    if (gate.try_lock_for(kCancelPoll)) nextCancel = now;
  }
}

// True while the module holds a job that it has told of.
bool Session::cancelKnownJobs(bool again) {
  if (again) module_.cancelAllPending();
  bool busy = false;
  for (const std::string& name : adapter_.ledger().jobNames) {
    if (!module_.isJobPendingOrRunning(name)) continue;
    busy = true;
    if (again) module_.cancelJob(name);
  }
  return busy;
}

}  // namespace genostat::standalone
