// The threads of a job, and how they share its samples.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <variant>
#include <vector>

#include "analysis/metrics/sample_result.h"
#include "analysis/report/progress.h"
#include "analysis/request/adapter.h"
#include "analysis/request/failure.h"
#include "analysis/request/samples.h"

namespace genostat::analysis {

struct CrewOptions {
  Adapter adapter;
  std::optional<int> phredOffset{};
  unsigned threads = 0;             // 0: as many as the process may run at once
  bool keepGoing = false;           // see measureSamples
  JobProgress* progress = nullptr;  // may be null
};

// What became of a sample: its figures, or why it could not be read.
using SampleOutcome = std::variant<SampleResult, Failure>;

// Takes the outcomes in the order of the samples, one at a time, each from the thread that comes to it.
using OutcomeSink = std::function<void(std::size_t sample, SampleOutcome outcome)>;

// Measures all samples. Threads take a sample each as long as there are any; then they help with those that
// are not finished. Few finished samples wait for an earlier one: threads that would get too far ahead help
// with it instead, so memory does not grow with the number of samples.
//
// With keepGoing a sample that fails is an outcome like others, and an empty file is a sample without reads.
// Without, the Failure of the first sample, in their order, that fails is thrown, the later ones are given
// up, and `sink` has been called for some or all of those before it. What `sink` throws ends the job as well.
void measureSamples(const std::vector<Sample>& samples, const CrewOptions& options, const OutcomeSink& sink);

}  // namespace genostat::analysis
