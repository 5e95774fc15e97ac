// Batches whose memory is used again.
#pragma once

#include <memory>
#include <mutex>
#include <utility>
#include <vector>

#include "analysis/fastq/record_cutter.h"

namespace genostat::analysis {

// Fresh pages cost more than what is written to them: a batch that has done its work serves the next chunk,
// of the same sample or of another. Any thread.
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

}  // namespace genostat::analysis
