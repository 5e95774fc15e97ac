// The measuring of one sample, by any number of threads.
//
// A chunk of the file is fetched (one at a time, in order), expanded and searched for its lines (all at
// once), cut into records when the chunks before it are cut (one at a time, in order), and its records are
// measured (all at once). What depends on the order of the reads happens in the ordered steps; the rest is
// counted in integers, by each thread for itself, and added up at the end. So the result does not depend on
// the number of threads, nor on where chunks end.
//
// A thread fetches when nobody else does and few chunks wait to be measured; otherwise it takes the first of
// those. So where fetching is slow (a gzip stream), one thread does nothing
// else and never waits for another; where it is fast, all measure.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <exception>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "analysis/fastq/chunk_source.h"
#include "analysis/fastq/record_cutter.h"
#include "analysis/metrics/duplicate_table.h"
#include "analysis/metrics/sample_metrics.h"
#include "analysis/metrics/summarise.h"
#include "analysis/report/progress.h"
#include "analysis/simd/kernels.h"
#include "analysis/simd/probe_set.h"

namespace genostat::analysis {

// Batches whose memory is used again. Fresh pages cost more than what is written to them: a batch that has
// done its work serves the next chunk, of the same sample or of another. Any thread.
class BatchPool {
 public:
  std::unique_ptr<Batch> take() {
    const std::scoped_lock lock(mutex_);
    if (batches_.empty()) return std::make_unique<Batch>();
    std::unique_ptr<Batch> batch = std::move(batches_.back());
    batches_.pop_back();
    return batch;
  }
  void give(std::unique_ptr<Batch> batch) {
    const std::scoped_lock lock(mutex_);
    batches_.push_back(std::move(batch));
  }

 private:
  std::mutex mutex_;
  std::vector<std::unique_ptr<Batch>> batches_;  // guarded by mutex_
};

class SampleRun {
 public:
  // `pool`, `progress` (if not null) and `kernels` must outlive the run.
  SampleRun(std::unique_ptr<ChunkSource> source, const ResultOptions& options, BatchPool& pool,
            SampleProgress* progress, const Kernels& kernels = bestKernels());

  // Works along until nothing is left to do. Failures are kept for result().
  void work();

  // Makes work() end soon; there is no result then.
  void stop();

  // Whether another thread would find nothing to do.
  bool exhausted() const;

  // Once, when every work() has returned. Throws the FastqError that comes first in the file, one that says
  // what the file is where it has no reads at all, or what else made the run fail (std::bad_alloc).
  SampleResult result();

 private:
  // A fetched chunk.
  struct Task {
    std::unique_ptr<Batch> batch;
    std::uint64_t ticket = 0;  // its number in the file
    bool last = false;  // after the last chunk, and empty: the file may have broken off inside a record
  };

  // The following throw nothing but std::bad_alloc.
  void workOn(SampleMetrics& metrics);
  // The next chunk to measure, perhaps after fetching some; nothing at the end.
  std::optional<Task> nextTask();
  Task fetch();
  void measure(const Task& task, SampleMetrics& metrics);
  // Waits until the chunks before this one are cut; false when the run has failed.
  bool awaitTurn(std::uint64_t ticket);
  void passTurn();
  // The ordered step. Returns how many of the batch's records were taken into the growing duplicate table.
  std::size_t cutInOrder(Batch& batch, bool last);
  void keep(const std::optional<FastqError>& error);
  void breakOff(const std::exception_ptr& reason);

  const ResultOptions options_;
  const ProbeSet probes_;
  const Kernels& kernels_;
  BatchPool& pool_;
  SampleProgress* const progress_;

  // Used by the thread that fetches.
  std::unique_ptr<ChunkSource> source_;
  std::uint64_t tickets_ = 0;
  std::uint64_t bytesTold_ = 0;

  // Used by the thread whose turn it is.
  RecordCutter cutter_;
  std::string head_;           // of the text: shows what a file is that is no FASTQ
  DuplicateTable duplicates_;  // once full by all, unchanged
  TileScheme tiles_;           // once known by all, unchanged
  bool tilesKnown_ = false;
  bool cutFailed_ = false;

  mutable std::mutex mutex_;  // guards all that follow
  std::condition_variable workChanged_;
  std::condition_variable turnPassed_;
  std::deque<Task> ready_;           // fetched, in order
  bool fetching_ = false;            // a thread is
  bool ended_ = false;               // nothing more is to be fetched
  bool broken_ = false;              // all are to leave at once
  std::uint64_t turn_ = 0;           // the ticket whose turn it is
  std::list<SampleMetrics> parts_;   // one for each work()
  std::size_t workers_ = 0;          // in work()
  std::optional<FastqError> error_;  // the first in the file
  std::exception_ptr exception_;
};

}  // namespace genostat::analysis
