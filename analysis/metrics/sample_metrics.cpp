#include "analysis/metrics/sample_metrics.h"

namespace genostat::analysis {

void SampleMetrics::add(std::span<const Record> batch) {
  lengths_.add(batch);
  bases_.add(batch);
  qualities_.add(batch);
}

SampleResult SampleMetrics::result() const {
  return {lengths_.summary(), bases_.summary(), qualities_.summary()};
}

}  // namespace genostat::analysis
