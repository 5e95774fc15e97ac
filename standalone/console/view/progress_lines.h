// What people are shown of a running job.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "standalone/session/job_progress.h"

namespace genostat::standalone {

struct ShownProgress {
  std::string jobName;
  double elapsed = 0;                   // seconds since the job began to run
  std::optional<JobProgress> progress;  // unless its analysis reports none
  std::size_t waiting = 0;              // jobs that wait after it
};

struct LineSpace {
  int width = 80;  // columns
  int height = 24;
  bool unicode = false;
};

// A line for the job, one for each sample that is read, and one for the jobs that wait; as many as fit above
// each other with a row to spare, each narrower than the space. None as long as there is little to say.
// Printable UTF-8.
std::vector<std::string> progressLines(const ShownProgress& shown, const LineSpace& space);

}  // namespace genostat::standalone
