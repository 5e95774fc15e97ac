// How near the reads' GC content comes to a normal distribution.
//
// Reads of one genome, cut at random, differ in GC content around that of the genome. A second hill or a
// shoulder points to something else among them: another organism, adapters, ribosomal RNA.
#pragma once

#include <optional>

#include "analysis/metrics/gc_counts.h"

namespace genostat::analysis {

// How far the GC content of the reads is from a normal distribution.
struct GcSummary {
  GcDistribution observed{};
  GcDistribution model{};  // the normal distribution around the observed mode, for as many reads
  // Sum of the differences between the two in percent of the reads; may be not-a-number.
  double deviation = 0;
};

// Nothing for a distribution without reads.
std::optional<GcSummary> fitGcModel(const GcDistribution& observed);

}  // namespace genostat::analysis
