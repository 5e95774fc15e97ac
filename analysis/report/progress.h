// How far a job is, for people who wait for it.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <list>
#include <mutex>
#include <ostream>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

namespace genostat::analysis {

// How much of a sample has been read. Its threads report here, any number of them at once.
class SampleProgress {
 public:
  SampleProgress(std::string name, std::uint64_t size) : name_(std::move(name)), size_(size) {}

  // Further bytes of its file, as stored, have been read; further reads have been seen.
  void addBytes(std::uint64_t bytes) { bytes_.fetch_add(bytes, std::memory_order_relaxed); }
  void addReads(std::uint64_t reads) { reads_.fetch_add(reads, std::memory_order_relaxed); }

  const std::string& name() const { return name_; }
  std::uint64_t size() const { return size_; }
  std::uint64_t bytes() const { return bytes_.load(std::memory_order_relaxed); }
  std::uint64_t reads() const { return reads_.load(std::memory_order_relaxed); }

 private:
  const std::string name_;
  const std::uint64_t size_;
  std::atomic<std::uint64_t> bytes_{0};
  std::atomic<std::uint64_t> reads_{0};
};

// What is done so far of a job. Any thread.
class JobProgress {
 public:
  // `bytes` is the size of all files as they are stored, 0 where it cannot be known.
  JobProgress(std::uint64_t bytes, std::size_t samples) {
    ended_.bytesTotal = bytes;
    ended_.samples = samples;
  }
  JobProgress(const JobProgress&) = delete;
  JobProgress& operator=(const JobProgress&) = delete;

  // `size` is that of its file as stored, 0 where it is not known. What is returned lasts until end().
  SampleProgress& begin(const std::string& name, std::uint64_t size);
  // Nobody reports to the sample any more.
  void end(const SampleProgress& sample);

  struct Running {
    std::string name;
    std::uint64_t bytes = 0;
    std::uint64_t size = 0;
    std::uint64_t reads = 0;
  };

  struct State {
    std::uint64_t bytesTotal = 0;
    std::uint64_t bytesDone = 0;
    std::uint64_t readsDone = 0;
    std::size_t samples = 0;
    std::size_t samplesDone = 0;
    std::vector<Running> running;  // in the order of their begin
  };
  State state() const;

 private:
  mutable std::mutex mutex_;           // guards the members, not the samples themselves
  State ended_;                        // without the samples that run
  std::list<SampleProgress> running_;  // in the order of their begin
};

// One line without its line end, at most `width` columns wide, such as
// "42 %  1210 MB/s  3.25M reads  0:12 left  3 of 96 samples  a.fastq, b.fastq".
std::string progressLine(const JobProgress::State& state, double seconds, std::size_t width);

// Calls `step` with the seconds since now, from a thread of its own: after `first`, then each time after
// `next`, until it returns false or the thread is asked to stop. Throws std::system_error where there is no
// thread.
std::jthread startTicking(std::chrono::milliseconds first, std::chrono::milliseconds next,
                          std::function<bool(double seconds)> step);

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
  void show(double seconds);

  const JobProgress& progress_;
  std::ostream& out_;
  const std::function<std::size_t()> width_;
  bool shown_ = false;  // used by the thread, then by the destructor
  std::jthread ticker_;
};

}  // namespace genostat::analysis
