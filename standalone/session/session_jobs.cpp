// A session's jobs: their messages, their results, and their cancellation when it is interrupted.
#include <algorithm>
#include <chrono>
#include <system_error>
#include <thread>
#include <utility>

#include "common/text/wrapped_text.h"
#include "platform/path_text.h"
#include "platform/running_program.h"
#include "standalone/language/system_reason.h"
#include "standalone/language/translation.h"
#include "standalone/session/session.h"

namespace genostat::standalone {

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

// How often a waiting session asks whether a job was lost. Messages wake it at once.
constexpr auto kLostJobCheck = 50ms;
// A job cancelled before its process exists is started all the same and cancelled again.
constexpr auto kCancelAgain = 200ms;
constexpr auto kEndPoll = 5ms;
// How long an interrupted program waits for the command that runs, and for its last notices.
constexpr auto kCommandPatience = 2s;
constexpr auto kNoticePatience = 300ms;
constexpr int kInterruptedStatus = 130;

std::string shownJobName(const std::string& name) {
  return name.empty() ? translated("(unnamed)") : common::printableText(name);
}

}  // namespace

void Session::showMessages() {
  while (const auto message = adapter_.take(0ms)) {
    onMessage(*message);
  }
  if (!eventsFailureShown_ && adapter_.eventsFailed()) {
    eventsFailureShown_ = true;
    reportError(translated("cannot write the event file {1}",
                           {"\"" + platform::pathToUtf8(options_.eventsFile) + "\""}));
  }
}

void Session::onMessage(const ClientMessage& message) {
  const std::vector<JobEvent> events = tracker_.onMessage(message);
  if (!events.empty()) tellJobs();
  for (const JobEvent& event : events) {
    if (event.kind == JobEvent::Kind::Ended) {
      onEnded(message);
    } else {
      showJobEvent(event);
    }
  }
}

void Session::tellJobs() {
  if (!gate_.interrupted()) view_.jobsChanged(tracker_.openJobs());
}

void Session::showJobEvent(const JobEvent& event) {
  const std::string name = shownJobName(event.jobName);
  switch (event.kind) {
    case JobEvent::Kind::Queued:
      return view_.showNotice(translated("job '{1}' queued", {name}));
    case JobEvent::Kind::Running:
      return view_.showNotice(translated("job '{1}' running", {name}));
    case JobEvent::Kind::Ended:
      return view_.showNotice(translated("job '{1}' finished", {name}));
    case JobEvent::Kind::Cancelled:
      cancelled_ = true;
      return view_.showNotice(translated("job '{1}' cancelled", {name}));
    case JobEvent::Kind::Lost:
      return reportError(
          translated("job '{1}' could not be started: its launcher did not start, its command line is too "
                     "long, or the temporary folder is gone",
                     {name}));
  }
}

void Session::onEnded(const ClientMessage& message) {
  if (message.failure.empty()) {
    showJobEvent({JobEvent::Kind::Ended, message.jobName});
  } else {
    reportError(translated("job '{1}' failed: {2}", {shownJobName(message.jobName), message.failure}));
  }
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
  while (!tracker_.openNames().empty()) {
    if (gate_.interrupted()) waitForProgramEnd();
    if (const auto message = adapter_.take(kLostJobCheck)) {
      onMessage(*message);
    } else {
      checkForLostJobs();
    }
  }
  if (!cancelled_) return;
  // A cancelled job has told its end before its processes have ended.
  while (moduleHoldsJobs()) {
    std::this_thread::sleep_for(kEndPoll);
  }
  adapter_.removeCancelledLeftovers();
  cancelled_ = false;
}

void Session::checkForLostJobs() {
  std::set<std::string> unknown;
  for (const std::string& name : tracker_.openNames()) {
    if (!module_.isJobPendingOrRunning(name)) unknown.insert(name);
  }
  // A message that was sent before the module answered counts.
  showMessages();
  const std::vector<JobEvent> events = tracker_.onUnknown(unknown);
  if (!events.empty()) tellJobs();
  for (const JobEvent& event : events) {
    showJobEvent(event);
  }
}

bool Session::moduleHoldsJobs() const {
  const std::set<std::string> names = adapter_.jobNames();
  return std::any_of(names.begin(), names.end(),
                     [this](const std::string& name) { return module_.isJobPendingOrRunning(name); });
}

void Session::runEndSyntax(const ClientMessage& message) {
  const auto syntax = std::make_shared<const SourceText>(
      SourceText{"<job '" + shownJobName(message.jobName) + "'>", message.syntax});
  // A failed job has no results, and its file's name may be that of a later job.
  if (!message.failure.empty()) return runCommands(syntax);
  const std::filesystem::path csv = platform::pathFromNarrow(message.csvFilePath);
  if (!options_.csvFolder.empty()) asCommand([&] { copyResults(message, csv); });
  asCommand([&] { showResults(csv); });
  std::error_code missing;
  const auto written = std::filesystem::last_write_time(csv, missing);
  runCommands(syntax);
  asCommand([&] {
    // The syntax removes the result itself, unless its command failed. By now the name may mean
    // another program's file.
    std::error_code gone;
    if (!missing && std::filesystem::last_write_time(csv, gone) == written) {
      std::filesystem::remove(csv, gone);
    }
    adapter_.forgetResultFile(message.csvFilePath);
  });
}

void Session::showResults(const std::filesystem::path& csv) {
  try {
    view_.showResults(csv);
  } catch (const CommandError& error) {
    report(error.diagnostic());
  }
}

void Session::copyResults(const ClientMessage& message, const std::filesystem::path& csv) {
  const std::string name = copyNames_.next(message.jobName, platform::pathToUtf8(csv.stem()));
  const std::filesystem::path copy = options_.csvFolder / platform::pathFromUtf8(name + ".csv");
  std::error_code error;
  std::filesystem::create_directories(options_.csvFolder, error);
  if (!error) {
    std::filesystem::copy_file(csv, copy, std::filesystem::copy_options::overwrite_existing, error);
  }
  if (!error) return;
  reportError(translated("cannot copy the results of job '{1}' to {2}: {3}",
                         {shownJobName(message.jobName), "\"" + platform::pathToUtf8(copy) + "\"",
                          translatedReason(error.message())}));
}

void Session::asCommand(const std::function<void()>& work) {
  if (const CommandGate::Passage passage(gate_); passage) return work();
  waitForProgramEnd();
}

void Session::waitForProgramEnd() {
  while (true) {
    if (const auto message = adapter_.take(1h)) onMessage(*message);
  }
}

void Session::interrupt() {
  const CommandGate::Answer answer = gate_.interrupt();
  if (answer == CommandGate::Answer::Repeated) platform::exitNow(kInterruptedStatus);
  // The program is about to end, by itself or on the first interrupt's thread.
  if (answer != CommandGate::Answer::First) return;
  if (!adapter_.jobNames().empty()) view_.showNotice(translated("interrupted: cancelling all jobs"));
  cancelJobs();
  for (const std::string& file : adapter_.resultFiles()) {
    std::error_code ignored;
    std::filesystem::remove(platform::pathFromNarrow(file), ignored);
  }
  adapter_.removeCancelledLeftovers();
  privateFolder_.remove();
  adapter_.waitUntilIdle(kNoticePatience);
  platform::exitNow(kInterruptedStatus);
}

// Returns when the module holds no job, and either no command runs that could submit one, or a
// command runs for too long to be waited for.
void Session::cancelJobs() {
  auto nextCancel = Clock::now();
  auto patienceEnds = nextCancel + kCommandPatience;
  while (true) {
    // Asked first: a command may submit a job right before it ends.
    const bool free = gate_.waitUntilFree(0ms);
    const auto now = Clock::now();
    if (!moduleHoldsJobs()) {
      if (free || now >= patienceEnds) return;
      gate_.waitUntilFree(kEndPoll);
      continue;
    }
    patienceEnds = now + kCommandPatience;
    if (now >= nextCancel) {
      nextCancel = now + kCancelAgain;
      module_.cancelAllPending();
      for (const std::string& name : adapter_.jobNames()) {
        module_.cancelJob(name);
      }
    }
    std::this_thread::sleep_for(kEndPoll);
  }
}

}  // namespace genostat::standalone
