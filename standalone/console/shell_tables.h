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

namespace genostat::console {

// `progress` is that of the running job, `now` the time up to which it has run.
standalone::PivotTable jobsTable(const std::vector<standalone::JobStatus>& jobs,
                                 const std::optional<standalone::JobProgress>& progress,
                                 std::chrono::steady_clock::time_point now);

// `active` may be null.
standalone::PivotTable datasetsTable(const std::vector<std::unique_ptr<standalone::Dataset>>& datasets,
                                     const standalone::Dataset* active);

// The first cases of a dataset; of one variable where `only` is one of the dataset's.
standalone::PivotTable casesTable(const standalone::Dataset& dataset, const standalone::Column* only,
                                  std::size_t count);

// 59 s, 3:07, 2:15:00.
std::string elapsedText(std::chrono::seconds elapsed);

}  // namespace genostat::console
