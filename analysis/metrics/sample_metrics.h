// Every metric of one sample, fed by one pass over its reads.
#pragma once

#include <span>

#include "analysis/fastq/record.h"
#include "analysis/metrics/base_composition.h"
#include "analysis/metrics/quality_level.h"
#include "analysis/metrics/read_lengths.h"

namespace genostat::analysis {

// What reports are made from: each metric's summary.
struct SampleResult {
  LengthSummary lengths;
  BaseSummary bases;
  QualitySummary qualities;
};

class SampleMetrics {
 public:
  // The next reads in file order.
  void add(std::span<const Record> batch);
  SampleResult result() const;

 private:
  ReadLengths lengths_;
  BaseComposition bases_;
  QualityLevel qualities_;
};

}  // namespace genostat::analysis
