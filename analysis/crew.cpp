#include "analysis/crew.h"

#include <algorithm>
#include <condition_variable>
#include <cstdint>
#include <filesystem>
#include <list>
#include <map>
#include <memory>
#include <mutex>
#include <new>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

#include "analysis/fastq/chunk_source.h"
#include "analysis/request/failure.h"
#include "analysis/sample_run.h"
#include "common/files/path_fault.h"
#include "common/text/printable_text.h"

namespace genostat::analysis {

namespace {

Failure openFailure(const Sample& sample, const std::error_code& reason) {
  const std::string sentence = common::cannotRead(sample.givenPath, reason.message());
  if (reason == std::errc::no_such_file_or_directory) {
    return {ExitCode::FileNotFound, sample.givenPath, sentence};
  }
  if (reason == std::errc::permission_denied || reason == std::errc::operation_not_permitted) {
    return {ExitCode::PermissionDenied, sample.givenPath, sentence};
  }
  return {ExitCode::General, sample.givenPath, sentence};
}

std::unique_ptr<ByteSource> openSample(const Sample& sample) {
  if (sample.path.empty()) return openStandardInput();
  return sample.isStream ? openPipe(sample.path) : openFile(sample.path);
}

// 0 where it is not known.
std::uint64_t sizeOf(const Sample& sample) {
  std::error_code unknown;
  const std::uintmax_t size = sample.isStream ? 0 : std::filesystem::file_size(sample.path, unknown);
  return unknown ? 0 : size;
}

// Runs a step of a sample's measuring; what goes wrong becomes a Failure that names the sample.
template <typename Step>
auto forSample(const Sample& sample, const Step& step) {
  try {
    return step();
  } catch (const std::system_error& error) {
    throw openFailure(sample, error.code());
  } catch (const FastqError& error) {
    throw Failure(ExitCode::InvalidFastq, sample.fileName,
                  common::shownName(sample.givenPath) + ": " + error.what());
  } catch (const std::bad_alloc&) {
    throw Failure(ExitCode::OutOfMemory, sample.fileName,
                  common::shownName(sample.fileName) + ": not enough memory");
  }
}

class Crew {
 public:
  Crew(const std::vector<Sample>& samples, const CrewOptions& options, const OutcomeSink& sink,
       unsigned threads)
      : samples_(samples),
        options_(options),
        resultOptions_{options.adapter, options.phredOffset, options.keepGoing},
        sink_(sink),
        threads_(threads),
        end_(samples.size()) {
    // Nobody knows when a stream goes on, and a read of it cannot be given up: it must not keep a failure of
    // another sample waiting.
    for (const bool streams : {false, true}) {
      for (std::size_t i = 0; i < samples.size(); ++i) {
        if (samples[i].isStream == streams) order_.push_back(i);
      }
    }
  }

  void run() {
    std::vector<std::jthread> others;
    others.reserve(threads_ - 1);
    try {
      while (others.size() + 1 < threads_) {
        others.emplace_back([this] { work(); });
      }
    } catch (const std::exception&) {
      // As many as the system gives, for which memory suffices.
    }
    work();
    others.clear();
    if (failure_) std::rethrow_exception(failure_);
  }

 private:
  // A sample that is being measured.
  struct Task {
    std::size_t index;
    std::shared_ptr<SampleRun> run{};    // once it is open
    SampleProgress* progress = nullptr;  // if anybody asks for it
    unsigned workers = 1;
  };
  using Outcome = std::variant<SampleResult, std::exception_ptr>;

  // One thread's part of the job.
  void work() {
    while (Task* task = choose()) {
      if (open(*task)) {
        task->run->work();
        leave(*task);
      }
    }
  }

  // A sample to begin or to help with; null when there is nothing more to do. Counts the caller in.
  Task* choose() {
    std::unique_lock lock(mutex_);
    for (;;) {
      if (Task* const next = beginNext()) return next;
      Task* helped = nullptr;
      bool opening = false;
      for (Task& task : active_) {
        if (!task.run) {
          opening = true;
        } else if (!task.run->exhausted() && (helped == nullptr || task.workers < helped->workers)) {
          helped = &task;
        }
      }
      if (helped != nullptr) ++helped->workers;
      if (helped != nullptr || (!opening && begun_ == order_.size())) return helped;
      changed_.wait(lock);
    }
  }

  // Null when there is none, or none yet.
  Task* beginNext() {
    while (begun_ < order_.size() && order_[begun_] >= end_) {
      ++begun_;
    }
    if (begun_ == order_.size()) return nullptr;
    const std::size_t index = order_[begun_];
    if (samples_[index].isStream ? hasActiveFile() : isFarAhead()) return nullptr;
    ++begun_;
    return &active_.emplace_back(Task{index});
  }

  // Whether enough samples wait for an earlier one. For a stream, which comes last, all of them have to.
  bool isFarAhead() const {
    return finished_.size() >= 2 * std::size_t{threads_} + kFewOutcomes && !samples_[delivered_].isStream;
  }

  bool hasActiveFile() const {
    return std::ranges::any_of(active_, [this](const Task& task) { return !samples_[task.index].isStream; });
  }

  // Makes sure that the sample is open; false when it could not be opened.
  bool open(Task& task) {
    {
      const std::scoped_lock lock(mutex_);
      if (task.run) return true;
    }
    // Only the thread that begins a sample comes here: it cannot be helped before.
    const Sample& sample = samples_[task.index];
    std::shared_ptr<SampleRun> run;
    SampleProgress* progress = nullptr;
    std::exception_ptr failure;
    try {
      if (options_.progress != nullptr) progress = &options_.progress->begin(sample.name, sizeOf(sample));
      if (sample.failure) throw Failure(*sample.failure);
      run = forSample(sample, [&] {
        return std::make_shared<SampleRun>(openChunks(openSample(sample)), resultOptions_, pool_, progress);
      });
    } catch (...) {
      failure = std::current_exception();
    }
    if (failure && progress != nullptr) options_.progress->end(*progress);
    std::unique_lock lock(mutex_);
    if (failure) {
      finish(task, failure, lock);
      return false;
    }
    task.run = std::move(run);
    task.progress = progress;
    if (task.index >= end_) task.run->stop();
    changed_.notify_all();
    return true;
  }

  // The last thread to leave a sample finishes it.
  void leave(Task& task) {
    bool wanted = false;
    {
      const std::scoped_lock lock(mutex_);
      if (task.workers > 1) {
        --task.workers;
        return;
      }
      // Nobody joins any more: the run is exhausted.
      wanted = task.index < end_;
    }
    Outcome outcome;
    if (wanted) {
      try {
        outcome = forSample(samples_[task.index], [&] { return task.run->result(); });
      } catch (...) {
        outcome = std::current_exception();
      }
    }
    if (task.progress != nullptr) options_.progress->end(*task.progress);
    std::unique_lock lock(mutex_);
    finish(task, std::move(outcome), lock);
  }

  // The task is gone afterwards.
  void finish(Task& task, Outcome outcome, std::unique_lock<std::mutex>& lock) {
    const std::size_t index = task.index;
    // Its memory is given back outside the lock, in the end.
    const std::shared_ptr<SampleRun> run = std::move(task.run);
    active_.remove_if([&](const Task& one) { return &one == &task; });
    if (index < end_) {
      if (const auto* failure = std::get_if<std::exception_ptr>(&outcome);
          failure != nullptr && !(options_.keepGoing && isFailure(*failure))) {
        giveUpFrom(index, *failure);
      } else {
        finished_.emplace(index, std::move(outcome));
        deliver(lock);
      }
    }
    changed_.notify_all();
    lock.unlock();
  }

  // Hands on what is next in order. One thread does it at a time, without the lock: the others need not wait.
  void deliver(std::unique_lock<std::mutex>& lock) {
    if (delivering_) return;
    delivering_ = true;
    while (delivered_ < end_) {
      auto next = finished_.extract(delivered_);
      if (next.empty()) break;
      lock.unlock();
      std::exception_ptr failure;
      try {
        sink_(next.key(), publicOutcome(std::move(next.mapped())));
      } catch (...) {
        failure = std::current_exception();
      }
      lock.lock();
      ++delivered_;
      if (failure) giveUpFrom(0, failure);
      changed_.notify_all();
    }
    delivering_ = false;
  }

  // The failure of the first sample is the one that is reported.
  void giveUpFrom(std::size_t index, const std::exception_ptr& failure) {
    failure_ = failure;
    end_ = index;
    for (const Task& task : active_) {
      if (task.index >= end_ && task.run) task.run->stop();
    }
  }

  static bool isFailure(const std::exception_ptr& exception) {
    try {
      std::rethrow_exception(exception);
    } catch (const Failure&) {
      return true;
    } catch (...) {
      return false;
    }
  }

  static SampleOutcome publicOutcome(Outcome outcome) {
    if (auto* result = std::get_if<SampleResult>(&outcome)) return std::move(*result);
    try {
      std::rethrow_exception(std::get<std::exception_ptr>(outcome));
    } catch (const Failure& failure) {
      return failure;
    }
  }

  static constexpr std::size_t kFewOutcomes = 8;

  const std::vector<Sample>& samples_;
  const CrewOptions& options_;
  const ResultOptions resultOptions_;
  const OutcomeSink& sink_;
  const unsigned threads_;
  BatchPool pool_;
  std::vector<std::size_t> order_;   // of beginning: indices of samples
  std::mutex mutex_;                 // guards all that follow, except that a sample's threads use its run
  std::condition_variable changed_;  // a sample was opened, has ended or was handed on
  std::list<Task> active_;           // in the order of their beginning
  std::map<std::size_t, Outcome> finished_;  // that wait for earlier ones
  std::size_t begun_ = 0;                    // so many of order_ have been begun, or passed over
  std::size_t delivered_ = 0;                // so many outcomes were handed on
  bool delivering_ = false;                  // a thread is
  std::size_t end_;                          // none from this one on is begun or handed on
  std::exception_ptr failure_;               // why
};

}  // namespace

void measureSamples(const std::vector<Sample>& samples, const CrewOptions& options, const OutcomeSink& sink) {
  const unsigned threads = options.threads > 0 ? options.threads : std::thread::hardware_concurrency();
  Crew(samples, options, sink, std::max(threads, 1U)).run();
}

}  // namespace genostat::analysis
