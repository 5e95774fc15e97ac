#include "standalone/console/shell/work.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <memory>
#include <utility>

#include "standalone/console/session_setup.h"
#include "standalone/language/translation.h"
#include "standalone/procedures/commands.h"

namespace genostat::standalone {

namespace {

constexpr std::chrono::milliseconds kFollowing(50);

}  // namespace

class ShellWork::Running {
 public:
  explicit Running(ShellWork& work) : work_(work) {
    work_.stopped_ = false;
    work_.running_ = true;
  }
  ~Running() { work_.running_ = false; }
  Running(const Running&) = delete;
  Running& operator=(const Running&) = delete;

 private:
  ShellWork& work_;
};

ShellWork::ShellWork(const RunOptions& options, ShellView& view)
    : view_(view), session_(sessionOptions(options), procedureCommands(), view, view.document()) {}

void ShellWork::followJobs() {
  jobs().follow(std::chrono::milliseconds(0));
}

std::vector<std::string> ShellWork::jobNames() {
  std::vector<std::string> names;
  for (const JobStatus& job : jobs().openJobs()) {
    names.push_back(job.name);
  }
  return names;
}

std::vector<std::string> ShellWork::datasetNames() {
  std::vector<std::string> names;
  for (const auto& dataset : commands().datasets().all()) {
    if (!dataset->name.empty()) names.push_back(dataset->name);
  }
  return names;
}

std::vector<std::string> ShellWork::variableNames() {
  const Dataset* active = commands().datasets().active();
  if (active == nullptr) return {};
  std::vector<std::string> names;
  std::ranges::transform(active->columns, std::back_inserter(names), &Column::name);
  return names;
}

void ShellWork::run(SourceText text) {
  const Running running(*this);
  session_.run(std::make_shared<const SourceText>(std::move(text)));
}

void ShellWork::runEndedJobs() {
  if (!jobs().canRunEnded()) return;
  const Running running(*this);
  runEndedUntilStopped();
}

void ShellWork::runEndedUntilStopped() {
  while (jobs().canRunEnded() && !stopped_) {
    runEndedJob();
  }
}

// Its syntax chooses the active dataset, which the user may have chosen otherwise.
void ShellWork::runEndedJob() {
  const Dataset* before = commands().datasets().active();
  jobs().runEnded();
  followJobs();
  heldResultsAnnounced_ = jobs().endedCount();
  const Dataset* active = commands().datasets().active();
  if (before == nullptr || active == before || active == nullptr) return;
  view_.showNotice(translated("the active dataset is now {1}", {active->name}));
}

void ShellWork::waitForJobs() {
  const Running running(*this);
  view_.showProgress(true);
  do {
    jobs().follow(kFollowing);
    runEndedUntilStopped();
  } while (!stopped_ && (!jobs().openJobs().empty() || jobs().endedCount() > 0));
  view_.showProgress(false);
  if (stopped_) view_.showNotice(translated("the jobs go on"));
}

void ShellWork::finishJobs() {
  const Running running(*this);
  jobs().finish();
}

void ShellWork::cancelAllJobs() {
  jobs().cancelAll();
  while (!jobs().openJobs().empty() || jobs().isCancelling()) {
    jobs().follow(kFollowing);
  }
}

void ShellWork::announceHeldResults() {
  const std::size_t held = jobs().endedCount();
  if (held > heldResultsAnnounced_) {
    view_.showNotice(translated("results are shown when nothing is being typed"));
  }
  heldResultsAnnounced_ = held;
}

bool ShellWork::stop() {
  stopped_ = true;
  session_.stop();
  return running_;
}

}  // namespace genostat::standalone
