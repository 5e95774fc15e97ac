// The inner loops, compiled once for each kind of vector unit.
//
// Every set of kernels gives the same results; only their speed differs. Text given to a kernel must have
// TextBuffer::kPadding readable bytes behind it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace genostat::analysis {

struct Kernels {
  const char* name;  // of the vector unit, such as "AVX2"

  // Writes the offsets of all line feeds of text[0, size), ascending, and returns their number. `offsets` must
  // have room for `size` + 64 entries; those behind the returned number are undefined. `size` below 2^32.
  std::size_t (*findLineFeeds)(const char* text, std::size_t size, std::uint32_t* offsets);
};

// The fastest set that this processor can run.
const Kernels& bestKernels();

// All sets that this processor can run, for tests and benchmarks; the last one is the plainest.
std::span<const Kernels* const> usableKernels();

}  // namespace genostat::analysis
