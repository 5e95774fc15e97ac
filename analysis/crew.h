// The threads of a job, and how they share its samples.
#pragma once

#include <optional>
#include <vector>

#include "analysis/metrics/sample_result.h"
#include "analysis/report/progress.h"
#include "analysis/request/adapter.h"
#include "analysis/request/samples.h"

namespace genostat::analysis {

struct CrewOptions {
  Adapter adapter;
  std::optional<int> phredOffset{};
  unsigned threads = 0;             // 0: as many as the process may run at once
  JobProgress* progress = nullptr;  // may be null
};

// Measures all samples and returns their results in the same order. Threads take a sample each as long as
// there are any; then they help with those that are not finished. Throws the Failure of the first sample, in
// their order, that fails; the later ones are given up.
std::vector<SampleResult> measureSamples(const std::vector<Sample>& samples, const CrewOptions& options);

}  // namespace genostat::analysis
