#include "analysis/sample_run.h"

#include <algorithm>
#include <span>
#include <utility>
#include <vector>

namespace genostat::analysis {

namespace {

std::vector<std::string> sequencesOf(const std::vector<Probe>& probes) {
  std::vector<std::string> sequences;
  for (const Probe& probe : probes) {
    sequences.push_back(probe.sequence);
  }
  return sequences;
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

SampleRun::SampleRun(std::unique_ptr<ChunkSource> source, const ResultOptions& options, JobProgress* progress,
                     const Kernels& kernels)
    : options_(options),
      probes_(sequencesOf(probesOf(options.adapter))),
      kernels_(kernels),
      progress_(progress),
      source_(std::move(source)) {}

void SampleRun::work(Batch& memory) {
  try {
    SampleMetrics* metrics = nullptr;
    {
      const std::scoped_lock lock(partsMutex_);
      metrics = &parts_.emplace_back(kernels_, probes_);
    }
    workOn(memory, *metrics);
  } catch (...) {
    {
      const std::scoped_lock lock(partsMutex_);
      if (!exception_) exception_ = std::current_exception();
    }
    breakOff();
  }
}

void SampleRun::workOn(Batch& memory, SampleMetrics& metrics) {
  std::uint64_t ticket = 0;
  bool last = false;
  while (fetch(memory.chunk, ticket, last)) {
    source_->expand(memory.chunk);
    findLines(memory, kernels_);
    if (!awaitTurn(ticket)) return;
    const std::size_t collected = cutInOrder(memory, last);
    const bool countMore = duplicates_.full();
    passTurn();
    keep(memory.error);
    keep(metrics.add(memory, tiles_));
    if (countMore) {
      duplicates_.count(std::span(std::as_const(memory.records)).subspan(collected), metrics.duplicates);
    }
  }
}

bool SampleRun::fetch(Chunk& chunk, std::uint64_t& ticket, bool& last) {
  const std::scoped_lock lock(fetchMutex_);
  if (ended_) return false;
  ticket = tickets_++;
  last = !source_->fetch(chunk);
  if (last) {
    // The turn after the last chunk's: the file may have broken off inside a record.
    ended_ = true;
    chunk.size = 0;
    chunk.blocks.clear();
    chunk.defect.clear();
  }
  if (progress_ != nullptr) {
    const std::uint64_t bytes = source_->bytesRead();
    progress_->advance(bytes - bytesTold_);
    bytesTold_ = bytes;
  }
  return true;
}

bool SampleRun::awaitTurn(std::uint64_t ticket) {
  std::unique_lock lock(turnMutex_);
  turnPassed_.wait(lock, [&] { return turn_ == ticket || broken_; });
  return !broken_;
}

void SampleRun::passTurn() {
  {
    const std::scoped_lock lock(turnMutex_);
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
  {
    const std::scoped_lock lock(partsMutex_);
    if (!error_ || error->record() < error_->record()) error_ = error;
  }
  // Chunks that are under way may hold an earlier one: they are still looked at.
  const std::scoped_lock lock(fetchMutex_);
  ended_ = true;
}

void SampleRun::breakOff() {
  {
    const std::scoped_lock lock(turnMutex_);
    broken_ = true;
  }
  turnPassed_.notify_all();
  const std::scoped_lock lock(fetchMutex_);
  ended_ = true;
}

void SampleRun::stop() {
  breakOff();
}

bool SampleRun::exhausted() const {
  const std::scoped_lock lock(fetchMutex_);
  return ended_;
}

SampleResult SampleRun::result() const {
  if (exception_) std::rethrow_exception(exception_);
  if (error_) throw FastqError(*error_);
  SampleCounts counts(probes_.size());
  std::vector<DuplicateTable::Counts> duplicates;
  for (const SampleMetrics& part : parts_) {
    counts.merge(part.counts());
    duplicates.push_back(part.duplicates);
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
