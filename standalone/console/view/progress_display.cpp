#include "standalone/console/view/progress_display.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

#include "common/cli/columns.h"
#include "standalone/console/view/progress_lines.h"
#include "standalone/services/host_folders.h"
#include "standalone/session/job_progress.h"

namespace genostat::standalone {

namespace {

using Clock = std::chrono::steady_clock;

// As often as analyses renew their progress files.
constexpr std::chrono::milliseconds kRenewal{200};

// Follows the progress files of one job after the other.
class ProgressFollower {
 public:
  std::vector<std::string> lines(const std::vector<JobStatus>& jobs, const LineSpace& space) {
    const auto running = std::ranges::find_if(jobs, &JobStatus::running);
    if (running == jobs.end()) return {};
    if (running->since != since_) {
      since_ = running->since;
      file_.reset();
      shown_ = {running->name, 0, std::nullopt, 0};
    }
    shown_.elapsed = std::chrono::duration<double>(Clock::now() - since_).count();
    shown_.waiting = static_cast<std::size_t>(std::ranges::count(jobs, false, &JobStatus::running));
    if (auto progress = read()) shown_.progress = std::move(progress);
    return progressLines(shown_, space);
  }

 private:
  std::optional<JobProgress> read() {
    if (file_) {
      if (auto progress = readJobProgress(*file_)) return progress;
    }
    file_ = findProgressFile(hostFolders().temporary);
    return file_ ? readJobProgress(*file_) : std::nullopt;
  }

  Clock::time_point since_;  // of the job that is followed
  std::optional<std::filesystem::path> file_;
  ShownProgress shown_;
};

}  // namespace

void ProgressDisplay::show(std::vector<JobStatus> jobs) {
  if (jobs.empty()) return end();
  {
    const std::lock_guard lock(mutex_);
    jobs_ = std::move(jobs);
    ended_ = false;
  }
  if (thread_.joinable()) return;
  try {
    thread_ = std::thread([this] { run(); });
  } catch (const std::system_error&) {
    // Too few threads are left: progress is not shown, and the jobs go on.
  }
}

void ProgressDisplay::end() {
  if (!thread_.joinable()) return;
  {
    const std::lock_guard lock(mutex_);
    ended_ = true;
  }
  wake_.notify_one();
  thread_.join();
  thread_ = {};
  lines_.draw({});
}

void ProgressDisplay::run() {
  ProgressFollower follower;
  const int wanted = common::columnsWanted();
  std::unique_lock lock(mutex_);
  while (!wake_.wait_for(lock, kRenewal, [this] { return ended_; })) {
    const std::vector<JobStatus> jobs = jobs_;
    lock.unlock();
    const platform::Terminal terminal = lines_.terminal();
    const int width = wanted > 0 ? std::min(wanted, terminal.width) : terminal.width;
    lines_.draw(follower.lines(jobs, {width, terminal.height, terminal.isUtf8}));
    lock.lock();
  }
}

}  // namespace genostat::standalone
