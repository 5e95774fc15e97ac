// The inner loops, compiled once for each kind of vector unit.
//
// Every set of kernels gives the same results; only their speed differs. Text given to a kernel must have
// TextBuffer::kPadding readable bytes after it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "analysis/fastq/record.h"
#include "analysis/simd/plane_segment.h"
#include "analysis/simd/probe_set.h"

namespace genostat::analysis {

// The lines of up to 64 reads, at one block of positions: the same kind of line, sequence or quality.
struct LineBlock {
  static constexpr std::size_t kMost = 64;

  std::array<const char*, kMost> text;
  // How many characters of the block belong to the line: at most kBlockSize. Lines are read in sixteens, so
  // those from `count` to the next multiple of 16 must be there, too: any readable block of size 0.
  std::array<std::uint8_t, kMost> sizes;
  std::size_t count = 0;
  bool full = false;  // every line up to that multiple has size kBlockSize
};

// What the qualities of a batch are like.
struct QualityRange {
  unsigned char lowest = 0xFF;
  unsigned char highest = 0;
};

// What is counted of one sequence.
struct SequenceCounts {
  std::uint64_t gc = 0;       // G and C in the part that counts
  std::uint64_t changes = 0;  // characters that differ from the next one
};

struct Kernels {
  const char* name;  // of the vector unit, such as "AVX2"

  // Writes the offsets of all line feeds of text[0, size), ascending, and returns their number. `offsets`
  // must have room for `size` + 64 entries; those after the returned number are undefined. `size` below
  // 2^32.
  std::size_t (*findLineFeeds)(const char* text, std::size_t size, std::uint32_t* offsets);

  // Writes the sum of each record's quality codes to `sums` and returns the range of all.
  QualityRange (*sumQualities)(std::span<const Record> records, std::uint64_t* sums);

  // Upper and lower case are the same. `gcLengths[i]` characters of record i, at most all, are looked at
  // for G and C.
  void (*countSequences)(std::span<const Record> records, const std::uint64_t* gcLengths,
                         SequenceCounts* counts);

  // Writes the first occurrence of each probe in each record to `hits`, which has room for records x
  // probes, by ascending record; returns their number.
  std::size_t (*findProbes)(std::span<const Record> records, const ProbeSet& probes, ProbeHit* hits);

  // Adds the code of each character to the sum at its place.
  void (*addCodes)(const char* text, std::size_t size, std::uint64_t* sums);

  // Adds the bases of a block to the planes of `segment`; flag i is Base i of position_counts.h. `block` is
  // the block's number within the segment.
  void (*addBases)(const LineBlock& lines, PlaneSegment& segment, std::size_t block);

  // Adds the qualities whose codes lie between 16 * `high` and 16 * `high` + 15 to two segments: flag i of
  // `segments[h]` stands for the code 16 * `high` + 8 * h + i. 1 <= `high` <= 7.
  void (*addQualities)(const LineBlock& lines, unsigned high, const std::array<PlaneSegment*, 2>& segments,
                       std::size_t block);
};

// The fastest set that this processor can run.
const Kernels& bestKernels();

// All sets that this processor can run, the fastest first, the plainest last: for tests and benchmarks.
std::span<const Kernels* const> usableKernels();

}  // namespace genostat::analysis
