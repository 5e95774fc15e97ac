// What genostat shell shows of jobs and data.
#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "standalone/data/dataset.h"
#include "standalone/output/pivot_table.h"
#include "standalone/session/job_progress.h"
#include "standalone/session/job_tracker.h"

namespace genostat::standalone {

// `progress` is that of the running job, `now` the time up to which it has run.
PivotTable jobsTable(const std::vector<JobStatus>& jobs, const std::optional<JobProgress>& progress,
                     std::chrono::steady_clock::time_point now);

// `active` may be null.
PivotTable datasetsTable(const std::vector<std::unique_ptr<Dataset>>& datasets, const Dataset* active);

// The first cases of a dataset; of one variable where `only` is one of the dataset's.
PivotTable casesTable(const Dataset& dataset, const Column* only, std::size_t count);

}  // namespace genostat::standalone
