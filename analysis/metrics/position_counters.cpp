#include "analysis/metrics/position_counters.h"

#include <algorithm>

namespace genostat::analysis {

namespace {

constexpr std::array<char, kBlockSize> kNoText{};

std::size_t blocksOf(const Record& record) {
  return (record.sequence.size() + kBlockSize - 1) / kBlockSize;
}

}  // namespace

void PositionCounters::add(std::span<const Record> records, const QualityRange& range) {
  byLength_.clear();
  bool sorted = true;
  for (const Record& record : records) {
    if (!byLength_.empty() && blocksOf(record) > blocksOf(*byLength_.back())) sorted = false;
    byLength_.push_back(&record);
  }
  // Reads of like length go together, so that few places of a set stay empty.
  if (!sorted) {
    std::stable_sort(byLength_.begin(), byLength_.end(),
                     [](const Record* a, const Record* b) { return blocksOf(*a) > blocksOf(*b); });
  }
  for (std::span<const Record* const> left = byLength_; !left.empty();) {
    const std::size_t count = std::min(left.size(), LineBlock::kMost);
    addLines(left.first(count), range);
    left = left.subspan(count);
  }
}

void PositionCounters::addLines(std::span<const Record* const> lines, const QualityRange& range) {
  const std::size_t blocks = blocksOf(*lines.front());
  std::size_t active = lines.size();
  for (std::size_t number = 0; number < blocks; ++number) {
    const std::size_t begin = number * kBlockSize;
    while (lines[active - 1]->sequence.size() <= begin) {
      --active;
    }
    sequences_.count = qualities_.count = active;
    bool full = active % 16 == 0;
    for (std::size_t i = 0; i < active; ++i) {
      const std::size_t left = lines[i]->sequence.size() - begin;
      full = full && left >= kBlockSize;
      sequences_.text[i] = lines[i]->sequence.data() + begin;
      qualities_.text[i] = lines[i]->quality.data() + begin;
      sequences_.sizes[i] = qualities_.sizes[i] = static_cast<std::uint8_t>(std::min(left, kBlockSize));
    }
    for (std::size_t i = active; i % 16 != 0; ++i) {
      sequences_.text[i] = qualities_.text[i] = kNoText.data();
      sequences_.sizes[i] = qualities_.sizes[i] = 0;
    }
    sequences_.full = qualities_.full = full;
    addBlock(number, range);
  }
}

void PositionCounters::addBlock(std::size_t number, const QualityRange& range) {
  const std::size_t segmentNumber = number / PlaneSegment::kBlocks;
  const std::size_t block = number % PlaneSegment::kBlocks;
  if (segmentNumber >= segments_.size()) segments_.push_back(std::make_unique<Segment>());
  Segment& segment = *segments_[segmentNumber];
  kernels_.addBases(sequences_, segment.bases, block);
  const std::size_t last = range.highest / 16U;
  for (std::size_t high = range.lowest / 16U; high <= last; ++high) {
    std::array<PlaneSegment*, 2> halves{};
    for (std::size_t half = 0; half < halves.size(); ++half) {
      std::unique_ptr<PlaneSegment>& place = segment.qualities[2 * high + half];
      if (!place) place = std::make_unique<PlaneSegment>();
      halves[half] = place.get();
    }
    kernels_.addQualities(qualities_, static_cast<unsigned>(high), halves, block);
  }
}

void PositionCounters::addTo(std::uint64_t position, PositionCounts& counts) const {
  const auto segmentNumber = static_cast<std::size_t>(position / kSegmentPositions);
  if (segmentNumber >= segments_.size()) return;
  const Segment& segment = *segments_[segmentNumber];
  const auto within = static_cast<std::size_t>(position % kSegmentPositions);
  std::array<std::uint64_t, 8> bases{};
  segment.bases.addCounts(within, bases.data());
  for (std::size_t base = 0; base < kBaseCount; ++base) {
    counts.bases[base] += bases[base];
  }
  for (std::size_t group = 0; group < kQualityGroups; ++group) {
    if (segment.qualities[group]) segment.qualities[group]->addCounts(within, &counts.qualities[8 * group]);
  }
}

}  // namespace genostat::analysis
