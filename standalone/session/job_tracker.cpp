#include "standalone/session/job_tracker.h"

#include <algorithm>

namespace genostat::standalone {

JobTracker::Job* JobTracker::oldest(const std::string& name, State state) {
  const auto job = std::find_if(jobs_.begin(), jobs_.end(), [&](const Job& candidate) {
    return candidate.state == state && candidate.name == name;
  });
  return job != jobs_.end() ? &*job : nullptr;
}

std::vector<JobEvent> JobTracker::onMessage(const ClientMessage& message) {
  std::vector<JobEvent> events = message.kind == ClientMessage::Kind::Queued    ? queue(message)
                                 : message.kind == ClientMessage::Kind::Running ? begin(message.jobName)
                                                                                : end(message);
  dropClosed();
  return events;
}

std::vector<JobEvent> JobTracker::queue(const ClientMessage& message) {
  jobs_.push_back({message.jobName, State::Queued, std::chrono::steady_clock::now(), message.parameterSize});
  return {{JobEvent::Kind::Queued, message.jobName}};
}

std::vector<JobEvent> JobTracker::begin(const std::string& name) {
  // A cancel may overtake the start of its job; that job is not looked for among the waiting ones.
  Job* job = oldest(name, State::Queued);
  if (job == nullptr) return {};
  std::vector<JobEvent> events;
  for (Job* earlier = jobs_.data(); earlier != job; ++earlier) {
    if (earlier->isOpen()) events.push_back(lost(*earlier));
    earlier->state = State::Closed;
  }
  job->state = State::Running;
  job->since = std::chrono::steady_clock::now();
  events.push_back({JobEvent::Kind::Running, name});
  return events;
}

std::vector<JobEvent> JobTracker::end(const ClientMessage& message) {
  const bool cancelled = message.syntax.empty();
  Job* job = oldest(message.jobName, State::Running);
  if (job == nullptr) job = oldest(message.jobName, State::Queued);
  // Of two jobs of one name the wrong one may have been taken for cancelled.
  if (job == nullptr && !cancelled) job = oldest(message.jobName, State::Cancelled);
  if (job == nullptr && cancelled) return {};
  if (job != nullptr) job->state = cancelled ? State::Cancelled : State::Closed;
  return {{cancelled ? JobEvent::Kind::Cancelled : JobEvent::Kind::Ended, message.jobName}};
}

std::vector<JobStatus> JobTracker::openJobs() const {
  std::vector<JobStatus> open;
  for (const Job& job : jobs_) {
    if (job.isOpen()) open.push_back({job.name, job.state == State::Running, job.since});
  }
  return open;
}

std::set<std::string> JobTracker::openNames() const {
  std::set<std::string> names;
  for (const Job& job : jobs_) {
    if (job.isOpen()) names.insert(job.name);
  }
  return names;
}

std::vector<JobEvent> JobTracker::onUnknown(const std::set<std::string>& names) {
  std::vector<JobEvent> events;
  for (Job& job : jobs_) {
    if (!names.contains(job.name)) continue;
    if (job.isOpen()) events.push_back(lost(job));
    job.state = State::Closed;
  }
  dropClosed();
  return events;
}

void JobTracker::dropClosed() {
  std::erase_if(jobs_, [](const Job& job) { return job.state == State::Closed; });
}

}  // namespace genostat::standalone
