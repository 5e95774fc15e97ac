#include "standalone/session/job_follower.h"

#include <algorithm>
#include <set>
#include <stdexcept>
#include <system_error>
#include <thread>
#include <utility>

#include "common/files/output_file.h"
#include "common/text/printable_text.h"
#include "common/text/wrapped_text.h"
#include "platform/path_text.h"
#include "standalone/language/translation.h"
#include "standalone/services/host_folders.h"
#include "standalone/session/quoted_path.h"
#include "standalone/session/requirements.h"
#include "standalone/syntax/text_file.h"

namespace genostat::standalone {

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

// How often a waiting client asks whether a job was lost. Messages wake it at once.
constexpr auto kLostJobCheck = 50ms;
constexpr auto kCancelAgain = 200ms;
constexpr auto kEndPoll = 5ms;
// How long an interrupted program waits for a command that runs.
constexpr auto kCommandPatience = 2s;

std::string shownJobName(const std::string& name) {
  return name.empty() ? translated("(unnamed)") : common::shownName(name);
}

}  // namespace

JobFollower::JobFollower(Options options, const JobControl& module, CommandGate& gate, SessionView& view,
                         std::function<void(const SourcePtr&)> runSyntax)
    : options_(std::move(options)),
      module_(module),
      gate_(gate),
      view_(view),
      runSyntax_(std::move(runSyntax)),
      adapter_(options_.interactive, options_.eventsFile,
               [this](ClientMessage& message) { posted_.onPost(message); }) {}

void JobFollower::showMessages() {
  while (const auto message = adapter_.take(0ms)) {
    onMessage(*message);
  }
  if (!eventsFailureShown_ && adapter_.eventsFailed()) {
    eventsFailureShown_ = true;
    reportError(translated("cannot write the event file {1}", {quotedPath(options_.eventsFile)}));
  }
}

void JobFollower::showMessagesUntil(const std::stop_token& end) {
  while (const auto message = adapter_.take(end)) {
    onMessage(*message);
  }
}

void JobFollower::onMessage(const ClientMessage& message) {
  const std::vector<JobEvent> events = tracker_.onMessage(message);
  if (!events.empty()) showOpenJobs();
  for (const JobEvent& event : events) {
    if (event.kind == JobEvent::Kind::Ended) {
      onEnded(message);
    } else {
      showEvent(event);
    }
  }
}

void JobFollower::showOpenJobs() {
  if (!gate_.interrupted()) view_.jobsChanged(tracker_.openJobs());
}

void JobFollower::showEvent(const JobEvent& event) {
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
      return reportError(whyNotStarted(name, event.parameterSize, hostFolders()));
  }
}

void JobFollower::onEnded(const ClientMessage& message) {
  if (message.failure.empty()) {
    showEvent({JobEvent::Kind::Ended, message.jobName});
  } else {
    reportError(translated("job '{1}' failed: {2}", {shownJobName(message.jobName), message.failure}));
  }
  ended_.push_back(message);
}

void JobFollower::reportError(const std::string& message) {
  failed_ = true;
  view_.showDiagnostic({{}, message, {}, {}});
}

void JobFollower::finish() {
  // Not as they come: while the module's queue is full, it refuses the commands of end messages.
  waitForJobs();
  while (!ended_.empty()) {
    runEnded();
    waitForJobs();
  }
}

void JobFollower::waitForJobs() {
  showMessages();
  while (cancelled_ || !tracker_.openNames().empty()) {
    follow(cancelled_ ? kEndPoll : kLostJobCheck);
  }
}

void JobFollower::follow(std::chrono::milliseconds patience) {
  gate_.pass([] {});
  if (const auto message = adapter_.take(patience)) onMessage(*message);
  showMessages();
  checkForLostJobs();
  repeatCancels();
  clearUpCancelled();
}

void JobFollower::checkForLostJobs() {
  std::set<std::string> unknown;
  for (const std::string& name : tracker_.openNames()) {
    if (!module_.isJobPendingOrRunning(name)) unknown.insert(name);
  }
  // A message that was sent before the module answered counts.
  showMessages();
  const std::vector<JobEvent> events = tracker_.onUnknown(unknown);
  if (!events.empty()) showOpenJobs();
  for (const JobEvent& event : events) {
    showEvent(event);
  }
}

bool JobFollower::moduleHoldsJobs() const {
  return std::ranges::any_of(posted_.names(),
                             [this](const std::string& name) { return module_.isJobPendingOrRunning(name); });
}

void JobFollower::runEnded() {
  if (ended_.empty()) return;
  const ClientMessage message = std::move(ended_.front());
  ended_.pop_front();
  const auto syntax = std::make_shared<const SourceText>(
      SourceText{"<job '" + shownJobName(message.jobName) + "'>", message.syntax});
  // A failed job has no results, and its file's name may be that of a later job.
  if (!message.failure.empty()) return runSyntax_(syntax);
  const std::filesystem::path csv = platform::pathFromNarrow(message.csvFilePath);
  gate_.pass([&] {
    if (!options_.csvFolder.empty()) copyResults(message, csv);
    showResults(csv);
  });
  std::error_code missing;
  const auto written = std::filesystem::last_write_time(csv, missing);
  runSyntax_(syntax);
  gate_.pass([&] {
    // The syntax removes the result itself, unless its command failed. By now the name may mean
    // another program's file.
    std::error_code gone;
    if (!missing && std::filesystem::last_write_time(csv, gone) == written) {
      std::filesystem::remove(csv, gone);
    }
    posted_.forgetResult(message.csvFilePath);
  });
}

void JobFollower::showResults(const std::filesystem::path& csv) {
  try {
    view_.showResults(csv);
  } catch (const CommandError& error) {
    failed_ = true;
    view_.showDiagnostic(error.diagnostic());
  }
}

void JobFollower::copyResults(const ClientMessage& message, const std::filesystem::path& csv) {
  const std::string name = copyNames_.next(message.jobName, platform::pathToUtf8(csv.stem()));
  const std::filesystem::path copy = options_.csvFolder / platform::pathFromUtf8(name + ".csv");
  const auto fail = [&](const std::string& reason) {
    reportError(translated("cannot copy the results of job '{1}' to {2}: {3}",
                           {shownJobName(message.jobName), quotedPath(copy), reason}));
  };
  const TextFile results = readTextFile(csv);
  if (!results.error.empty()) return fail(results.error);
  try {
    std::filesystem::create_directories(options_.csvFolder);
    common::writeFile(copy, results.text, common::PlaceLink::Replace);
  } catch (const std::filesystem::filesystem_error& failure) {
    fail(translatedReason(failure.code().message()));
  } catch (const std::runtime_error& failure) {
    fail(translatedReason(failure.what()));
  }
}

bool JobFollower::cancel(const std::string& name) {
  if (!tracker_.openNames().contains(name)) return false;
  module_.cancelJob(name);
  cancels_[name] = Clock::now() + kCancelAgain;
  return true;
}

void JobFollower::cancelAll() {
  module_.cancelAllPending();
  for (const std::string& name : tracker_.openNames()) {
    cancel(name);
  }
}

void JobFollower::repeatCancels() {
  const auto now = Clock::now();
  std::erase_if(cancels_, [&](const auto& cancel) { return !module_.isJobPendingOrRunning(cancel.first); });
  for (auto& [name, due] : cancels_) {
    if (now < due) continue;
    module_.cancelJob(name);
    due = now + kCancelAgain;
  }
}

// A cancelled job has sent its end message before its processes have ended.
void JobFollower::clearUpCancelled() {
  if (!cancelled_ || !tracker_.openNames().empty() || moduleHoldsJobs()) return;
  posted_.removeCancelledLeftovers();
  cancelled_ = false;
}

void JobFollower::cancelForGood() {
  if (!posted_.names().empty()) view_.showNotice(translated("interrupted: cancelling all jobs"));
  cancelUntilNoneIsLeft();
  posted_.removeResults();
  posted_.removeCancelledLeftovers();
}

// Returns when the module holds no job, and either no command runs that could submit one, or a
// command runs for too long to be waited for. A process that cannot be ended keeps it waiting; a further
// interrupt ends the program nevertheless.
void JobFollower::cancelUntilNoneIsLeft() {
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
      for (const std::string& name : posted_.names()) {
        module_.cancelJob(name);
      }
    }
    std::this_thread::sleep_for(kEndPoll);
  }
}

}  // namespace genostat::standalone
