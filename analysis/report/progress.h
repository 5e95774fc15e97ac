// How far a job is, for people who wait for it.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <ostream>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace genostat::analysis {

// What is done so far. The threads that read samples report here, any number of them at once.
class JobProgress {
 public:
  JobProgress() = default;
  JobProgress(const JobProgress&) = delete;
  JobProgress& operator=(const JobProgress&) = delete;

  // Before the first sample begins: the size of all files as they are stored. 0 where it cannot be known.
  void expect(std::uint64_t bytes, std::size_t samples);
  void begin(const std::string& name);
  // Further bytes of a file, as stored, have been read.
  void advance(std::uint64_t bytes) { bytesDone_.fetch_add(bytes, std::memory_order_relaxed); }
  void end(const std::string& name);

  struct State {
    std::uint64_t bytesTotal = 0;
    std::uint64_t bytesDone = 0;
    std::size_t samples = 0;
    std::size_t samplesDone = 0;
    std::vector<std::string> running;  // names, in the order of their begin
  };
  State state() const;

 private:
  std::atomic<std::uint64_t> bytesDone_{0};
  mutable std::mutex mutex_;
  State rest_;  // all but bytesDone; guarded by mutex_
};

// One line without its line end, at most `width` columns wide, such as
// "42 %  1210 MB/s  3 of 96 files  a.fastq, b.fastq".
std::string progressLine(const JobProgress::State& state, double seconds, std::size_t width);

// Shows a job's progress as one line that is rewritten, from a thread of its own, and is gone when the
// display ends. `progress` and `out` must outlive it. `width` gives the terminal's columns, which may
// change meanwhile.
class ProgressDisplay {
 public:
  ProgressDisplay(const JobProgress& progress, std::ostream& out, std::function<std::size_t()> width,
                  std::chrono::milliseconds interval = std::chrono::milliseconds(200));
  ProgressDisplay(const ProgressDisplay&) = delete;
  ProgressDisplay& operator=(const ProgressDisplay&) = delete;
  ~ProgressDisplay();

 private:
  void run();

  const JobProgress& progress_;
  std::ostream& out_;
  const std::function<std::size_t()> width_;
  const std::chrono::milliseconds interval_;
  const std::chrono::steady_clock::time_point start_;
  std::mutex mutex_;
  std::condition_variable wake_;
  bool ended_ = false;  // guarded by mutex_
  std::thread thread_;
};

}  // namespace genostat::analysis
