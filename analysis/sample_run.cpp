#include "analysis/sample_run.h"

#include <algorithm>
#include <ranges>
#include <span>
#include <utility>
#include <vector>

#include "analysis/fastq/file_kind.h"

namespace genostat::analysis {

namespace {

// So many chunks more than there are threads may wait to be measured. Some, so that threads seldom meet at
// the queue and a chunk has left the cache of the processor that inflated it before another one reads it.
constexpr std::size_t kAhead = 4;

constexpr std::size_t kKeptHead = 4096;

std::vector<std::string> sequencesOf(const std::vector<Probe>& probes) {
  const auto sequences = probes | std::views::transform(&Probe::sequence);
  return {sequences.begin(), sequences.end()};
}

void findLines(Batch& batch, const Kernels& kernels) {
  // What findLineFeeds asks for.
  const std::size_t needed = batch.chunk.size + kBlockSize;
  if (batch.lineFeedCapacity < needed) {
    batch.lineFeeds = std::make_unique_for_overwrite<std::uint32_t[]>(needed);
    batch.lineFeedCapacity = needed;
  }
  batch.lineFeedCount =
      batch.chunk.size == 0
          ? 0
          : kernels.findLineFeeds(batch.chunk.text.data(), batch.chunk.size, batch.lineFeeds.get());
}

}  // namespace

SampleRun::SampleRun(std::unique_ptr<ChunkSource> source, const ResultOptions& options, BatchPool& pool,
                     SampleProgress* progress, const Kernels& kernels)
    : options_(options),
      probes_(sequencesOf(probesOf(options.adapter))),
      kernels_(kernels),
      pool_(pool),
      progress_(progress),
      source_(std::move(source)),
      cutter_(options.emptyIsSample) {}

void SampleRun::work() {
  SampleMetrics* metrics = nullptr;
  try {
    {
      const std::scoped_lock lock(mutex_);
      metrics = &parts_.emplace_back(kernels_, probes_);
      ++workers_;
    }
    workOn(*metrics);
  } catch (...) {
    const bool others = [this] {
      const std::scoped_lock lock(mutex_);
      return workers_ > 0;
    }();
    // For one more thread there was no memory: those that work can do without it.
    if (metrics == nullptr && others) return;
    breakOff(std::current_exception());
  }
}

void SampleRun::workOn(SampleMetrics& metrics) {
  while (std::optional<Task> task = nextTask()) {
    measure(*task, metrics);
    pool_.give(std::move(task->batch));
  }
}

std::optional<SampleRun::Task> SampleRun::nextTask() {
  std::unique_lock lock(mutex_);
  for (;;) {
    workChanged_.wait(lock, [this] { return broken_ || !fetching_ || !ready_.empty(); });
    if (broken_) return std::nullopt;
    if (!ended_ && !fetching_ && ready_.size() < workers_ + kAhead) {
      fetching_ = true;
      lock.unlock();
      Task task = fetch();
      lock.lock();
      fetching_ = false;
      ended_ = ended_ || task.last;
      ready_.push_back(std::move(task));
      workChanged_.notify_one();
    } else if (!ready_.empty()) {
      Task task = std::move(ready_.front());
      ready_.pop_front();
      // Somebody else may now fetch, or leave.
      workChanged_.notify_one();
      return task;
    } else {
      // Nobody fetches and nothing is ready: this is the end.
      workChanged_.notify_all();
      return std::nullopt;
    }
  }
}

SampleRun::Task SampleRun::fetch() {
  Task task;
  task.batch = pool_.take();
  task.ticket = tickets_++;
  task.last = !source_->fetch(task.batch->chunk);
  if (progress_ != nullptr) {
    const std::uint64_t bytes = source_->bytesRead();
    progress_->addBytes(bytes - bytesTold_);
    bytesTold_ = bytes;
  }
  return task;
}

void SampleRun::measure(const Task& task, SampleMetrics& metrics) {
  Batch& batch = *task.batch;
  source_->expand(batch.chunk);
  findLines(batch, kernels_);
  if (!awaitTurn(task.ticket)) return;
  const std::size_t collected = cutInOrder(batch, task.last);
  const bool countMore = duplicates_.full();
  passTurn();
  if (progress_ != nullptr) progress_->addReads(batch.records.size());
  keep(batch.error);
  keep(metrics.add(batch, tiles_));
  if (countMore) {
    duplicates_.count(std::span(std::as_const(batch.records)).subspan(collected), metrics.duplicates);
  }
}

bool SampleRun::awaitTurn(std::uint64_t ticket) {
  std::unique_lock lock(mutex_);
  turnPassed_.wait(lock, [&] { return turn_ == ticket || broken_; });
  return !broken_;
}

void SampleRun::passTurn() {
  {
    const std::scoped_lock lock(mutex_);
    ++turn_;
  }
  turnPassed_.notify_all();
}

std::size_t SampleRun::cutInOrder(Batch& batch, bool last) {
  if (cutFailed_) {
    batch.records.clear();
    batch.error.reset();
    return 0;
  }
  if (head_.empty()) head_.assign(batch.chunk.text.data(), std::min(batch.chunk.size, kKeptHead));
  cutter_.cut(batch, last);
  cutFailed_ = batch.error.has_value();
  if (!tilesKnown_) {
    const auto filled = std::find_if(batch.records.begin(), batch.records.end(),
                                     [](const Record& record) { return !record.sequence.empty(); });
    if (filled != batch.records.end()) {
      tiles_ = TileScheme(filled->header);
      tilesKnown_ = true;
    }
  }
  return duplicates_.full() ? 0 : duplicates_.collect(batch.records);
}

void SampleRun::keep(const std::optional<FastqError>& error) {
  if (!error) return;
  const std::scoped_lock lock(mutex_);
  if (!error_ || error->record() < error_->record()) error_ = error;
  // Chunks that are under way may hold an earlier one: they are still looked at.
  ended_ = true;
  workChanged_.notify_all();
}

void SampleRun::breakOff(const std::exception_ptr& reason) {
  const std::scoped_lock lock(mutex_);
  if (!exception_) exception_ = reason;
  broken_ = true;
  ended_ = true;
  ready_.clear();
  workChanged_.notify_all();
  turnPassed_.notify_all();
}

void SampleRun::stop() {
  breakOff(nullptr);
}

bool SampleRun::exhausted() const {
  const std::scoped_lock lock(mutex_);
  return ended_ && ready_.empty();
}

SampleResult SampleRun::result() {
  if (exception_) std::rethrow_exception(exception_);
  if (error_ && error_->record() == 1) {
    if (std::string kind = foreignKind(head_); !kind.empty()) throw FastqError(std::move(kind));
  }
  if (error_) throw FastqError(*error_);
  // Not a copy: with many tiles and long reads it would be large.
  SampleCounts counts = parts_.front().takeCounts();
  std::vector<DuplicateTable::Counts> duplicates;
  for (SampleMetrics& part : parts_) {
    if (&part != &parts_.front()) counts.merge(part.takeCounts());
    duplicates.push_back(std::move(part.duplicates));
  }
  const auto positionCounts = [this](std::uint64_t position, PositionCounts& at) {
    at = {};
    for (const SampleMetrics& part : parts_) {
      part.positions().addTo(position, at);
    }
  };
  return summarise(counts, duplicates_.result(counts.lengths.reads(), duplicates), positionCounts, options_);
}

}  // namespace genostat::analysis
