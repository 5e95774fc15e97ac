// What a session does for a client that goes on reading commands while jobs run.
#include <algorithm>
#include <chrono>
#include <utility>

#include "standalone/session/session.h"

namespace genostat::standalone {

namespace {

// A job cancelled before its process exists is started all the same and cancelled again.
constexpr std::chrono::milliseconds kCancelRepeat(200);

}  // namespace

void Session::followJobs(std::chrono::milliseconds patience) {
  if (gate_.interrupted()) waitForProgramEnd();
  if (const auto message = adapter_.take(patience)) onMessage(*message);
  showMessages();
  checkForLostJobs();
  repeatCancels();
  clearUpCancelled();
}

void Session::runEndedJob() {
  if (ended_.empty()) return;
  const ClientMessage message = std::move(ended_.front());
  ended_.pop_front();
  runEndSyntax(message);
}

bool Session::cancelJob(const std::string& name) {
  const std::vector<JobStatus> open = tracker_.openJobs();
  const bool known = std::ranges::any_of(open, [&](const JobStatus& job) { return job.name == name; });
  if (!known) return false;
  module_.cancelJob(name);
  cancels_[name] = std::chrono::steady_clock::now() + kCancelRepeat;
  return true;
}

void Session::cancelAllJobs() {
  module_.cancelAllPending();
  for (const JobStatus& job : tracker_.openJobs()) {
    cancelJob(job.name);
  }
}

void Session::repeatCancels() {
  const auto now = std::chrono::steady_clock::now();
  for (auto cancel = cancels_.begin(); cancel != cancels_.end();) {
    auto& [name, due] = *cancel;
    if (!module_.isJobPendingOrRunning(name)) {
      cancel = cancels_.erase(cancel);
      continue;
    }
    if (now >= due) {
      module_.cancelJob(name);
      due = now + kCancelRepeat;
    }
    ++cancel;
  }
}

// A cancelled job has told its end before its processes have ended.
void Session::clearUpCancelled() {
  if (!cancelled_ || !tracker_.openNames().empty() || moduleHoldsJobs()) return;
  adapter_.removeCancelledLeftovers();
  cancelled_ = false;
}

}  // namespace genostat::standalone
