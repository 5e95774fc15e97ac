#include "analysis/metrics/sample_metrics.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace genostat::analysis {

namespace {

std::optional<FastqError> firstDefect(const Batch& batch) {
  for (std::size_t i = 0; i < batch.records.size(); ++i) {
    std::optional<FastqError> defect = qualityDefect(batch.records[i], batch.recordsBefore + i + 1);
    if (defect) return defect;
  }
  return std::nullopt;
}

}  // namespace

SampleMetrics::SampleMetrics(const Kernels& kernels, const ProbeSet& probes)
    : kernels_(kernels), probes_(probes), counts_(probes.size()), positions_(kernels) {}

std::optional<FastqError> SampleMetrics::add(const Batch& batch, const TileScheme& tiles) {
  Share share{batch.records, batch.filledBefore, batch.longestBefore};
  // A few at a time, so that they stay in the nearest cache while one metric after the other looks at them.
  for (std::size_t done = 0; done < batch.records.size(); done += share.records.size()) {
    share.records = std::span(batch.records).subspan(done);
    share.records = share.records.first(std::min(share.records.size(), kAtOnce));
    if (!addShare(share, tiles)) return firstDefect(batch);
  }
  return std::nullopt;
}

bool SampleMetrics::addShare(Share& share, const TileScheme& tiles) {
  qualitySums_.resize(share.records.size());
  const QualityRange range = kernels_.sumQualities(share.records, qualitySums_.data());
  // Empty reads alone have the empty range, from the highest to the lowest code.
  if (range.lowest <= range.highest) {
    if (range.lowest < '!' || range.highest > '~') return false;
    positions_.add(share.records, range);
  }
  addReads(share);
  addEnds(share);
  addProbes(share);
  addTiles(share, tiles);
  return true;
}

SampleCounts SampleMetrics::takeCounts() {
  SampleCounts counts = std::move(counts_);
  for (const auto& part : ends_) {
    addAll(counts.lastQualities, part);
  }
  return counts;
}

void SampleMetrics::addReads(const Share& share) {
  const std::size_t count = share.records.size();
  gcLengths_.resize(count);
  sequences_.resize(count);
  for (std::size_t i = 0; i < count; ++i) {
    gcLengths_[i] = gcLength(share.records[i].sequence.size());
  }
  kernels_.countSequences(share.records, gcLengths_.data(), sequences_.data());
  for (std::size_t i = 0; i < count; ++i) {
    const std::uint64_t length = share.records[i].sequence.size();
    counts_.lengths.add(length);
    counts_.gc.add(gcLengths_[i], sequences_[i].gc);
    counts_.lowComplexityReads += isLowComplexity(length, sequences_[i].changes);
    if (length > 0) ++counts_.meanQualities[static_cast<std::size_t>(qualitySums_[i] / length)];
  }
}

void SampleMetrics::addEnds(const Share& share) {
  for (const Record& record : share.records) {
    const std::size_t size = std::min<std::size_t>(record.quality.size(), kEndLength);
    const char* const end = record.quality.data() + (record.quality.size() - size);
    for (std::size_t i = 0; i < size; ++i) {
      ++ends_[i % ends_.size()][static_cast<unsigned char>(end[i])];
    }
  }
}

void SampleMetrics::addProbes(Share& share) {
  hits_.resize(share.records.size() * probes_.size());
  const std::size_t found = kernels_.findProbes(share.records, probes_, hits_.data());
  std::size_t seen = 0;
  const auto seeUpTo = [&](std::size_t end) {
    for (; seen < end; ++seen) {
      share.longest = std::max<std::uint64_t>(share.longest, share.records[seen].sequence.size());
    }
  };
  for (std::size_t i = 0; i < found; ++i) {
    const ProbeHit& hit = hits_[i];
    seeUpTo(hit.record + 1);
    const bool counts = share.longest > kProbeLength && hit.offset + kProbeLength <= share.longest;
    if (counts) counts_.adapters.add(hit.probe, hit.offset);
  }
  seeUpTo(share.records.size());
}

void SampleMetrics::addTiles(Share& share, const TileScheme& tiles) {
  for (const Record& record : share.records) {
    if (record.sequence.empty() || !tileSampled(++share.filled)) continue;
    if (const std::optional<int> tile = tiles.tileOf(record.header)) {
      counts_.tiles.add(*tile, record.quality, kernels_);
    } else {
      counts_.tiles.addUnreadable();
    }
  }
}

}  // namespace genostat::analysis
