#include "analysis/crew.h"

#include <algorithm>
#include <condition_variable>
#include <cstdint>
#include <filesystem>
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
  return sample.isStandardInput ? openStandardInput() : openFile(sample.path);
}

// 0 where it is not known.
std::uint64_t sizeOf(const Sample& sample) {
  std::error_code unknown;
  const std::uintmax_t size = sample.isStandardInput ? 0 : std::filesystem::file_size(sample.path, unknown);
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
  Crew(const std::vector<Sample>& samples, const CrewOptions& options)
      : options_(options), resultOptions_{options.adapter, options.phredOffset}, tasks_(samples.size()) {
    for (std::size_t i = 0; i < samples.size(); ++i) {
      tasks_[i].sample = &samples[i];
      order_.push_back(i);
    }
    // Nobody knows when standard input goes on, and a read of it cannot be given up: it must not keep a
    // failure of another sample waiting.
    std::stable_partition(order_.begin(), order_.end(),
                          [&](std::size_t index) { return !samples[index].isStandardInput; });
  }

  std::vector<SampleResult> run(unsigned threads) {
    std::vector<std::jthread> others;
    others.reserve(threads - 1);
    try {
      while (others.size() + 1 < threads) {
        others.emplace_back([this] { work(); });
      }
    } catch (const std::exception&) {
      // As many as the system gives, for which memory suffices.
    }
    work();
    others.clear();
    std::vector<SampleResult> results;
    results.reserve(tasks_.size());
    for (Task& task : tasks_) {
      if (task.failure) std::rethrow_exception(task.failure);
      results.push_back(std::move(*task.result));
    }
    return results;
  }

 private:
  // All members are guarded by mutex_, except that the threads of a sample use its run.
  struct Task {
    const Sample* sample = nullptr;
    std::shared_ptr<SampleRun> run;      // from its opening to its end
    SampleProgress* progress = nullptr;  // likewise, if anybody asks for it
    unsigned workers = 0;
    std::optional<SampleResult> result;
    std::exception_ptr failure;
  };

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
      for (Task& task : tasks_) {
        if (task.workers == 0) continue;
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
    for (; begun_ < order_.size(); ++begun_) {
      Task& task = tasks_[order_[begun_]];
      if (order_[begun_] >= end_) continue;
      const bool alone =
          std::all_of(tasks_.begin(), tasks_.end(), [](const Task& t) { return t.workers == 0; });
      if (task.sample->isStandardInput && !alone) return nullptr;
      ++begun_;
      task.workers = 1;
      return &task;
    }
    return nullptr;
  }

  std::size_t indexOf(const Task& task) const { return static_cast<std::size_t>(&task - tasks_.data()); }

  // Makes sure that the sample is open; false when it could not be opened.
  bool open(Task& task) {
    {
      const std::scoped_lock lock(mutex_);
      if (task.run) return true;
    }
    // Only the thread that begins a sample comes here: it cannot be helped before.
    std::shared_ptr<SampleRun> run;
    SampleProgress* progress = nullptr;
    std::exception_ptr failure;
    try {
      if (options_.progress != nullptr) {
        progress = &options_.progress->begin(task.sample->name, sizeOf(*task.sample));
      }
      run = forSample(*task.sample, [&] {
        return std::make_shared<SampleRun>(openChunks(openSample(*task.sample)), resultOptions_, pool_,
                                           progress);
      });
    } catch (...) {
      failure = std::current_exception();
    }
    const std::scoped_lock lock(mutex_);
    task.run = std::move(run);
    task.progress = progress;
    if (failure) {
      task.workers = 0;
      fail(task, failure);
      if (progress != nullptr) options_.progress->end(*progress);
    } else if (indexOf(task) >= end_) {
      task.run->stop();
    }
    changed_.notify_all();
    return !failure;
  }

  // The last thread to leave a sample finishes it.
  void leave(Task& task) {
    std::shared_ptr<SampleRun> run;
    SampleProgress* progress = nullptr;
    bool wanted = false;
    {
      const std::scoped_lock lock(mutex_);
      if (task.workers > 1) {
        --task.workers;
        return;
      }
      // Nobody joins any more: the run is exhausted.
      run = std::move(task.run);
      progress = task.progress;
      wanted = indexOf(task) < end_;
    }
    std::optional<SampleResult> result;
    std::exception_ptr failure;
    if (wanted) {
      try {
        result = forSample(*task.sample, [&] { return run->result(); });
      } catch (...) {
        failure = std::current_exception();
      }
    }
    run.reset();
    if (progress != nullptr) options_.progress->end(*progress);
    const std::scoped_lock lock(mutex_);
    task.workers = 0;
    task.result = std::move(result);
    if (failure) fail(task, failure);
    changed_.notify_all();
  }

  // Gives up the samples after a failed one: the first failure is the one that is reported.
  void fail(Task& task, const std::exception_ptr& failure) {
    task.failure = failure;
    end_ = std::min(end_, indexOf(task));
    for (std::size_t i = end_ + 1; i < tasks_.size(); ++i) {
      if (tasks_[i].run) tasks_[i].run->stop();
    }
  }

  const CrewOptions& options_;
  const ResultOptions resultOptions_;
  BatchPool pool_;
  std::mutex mutex_;                 // guards all that follow
  std::condition_variable changed_;  // a sample was opened, or has ended
  std::vector<Task> tasks_;
  std::vector<std::size_t> order_;   // of beginning: indices of tasks_
  std::size_t begun_ = 0;            // so many of order_ have been begun, or passed over
  std::size_t end_ = tasks_.size();  // the first task that failed: none after it is begun
};

}  // namespace

std::vector<SampleResult> measureSamples(const std::vector<Sample>& samples, const CrewOptions& options) {
  const unsigned threads = options.threads > 0 ? options.threads : std::thread::hardware_concurrency();
  return Crew(samples, options).run(std::max(threads, 1U));
}

}  // namespace genostat::analysis
