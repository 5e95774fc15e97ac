// A job's progress beside its result, for the program that waits for it.
#pragma once

#include <chrono>
#include <filesystem>
#include <string>
#include <thread>

#include "analysis/report/progress.h"

namespace genostat::analysis {

// One JSON object on a line: {"format":"genostat-progress","version":1,...}.
std::string progressJson(const JobProgress::State& state, double seconds);

// Keeps <result>.progress up to date from a thread of its own, each time in one step, and removes it when it
// ends. Whatever goes wrong with that is passed over: the file may be missing or old, but never half-written.
// A file of that name that is something else is left alone. `progress` must outlive it.
class ProgressFile {
 public:
  struct Pace {
    // A job that is done sooner has no such file.
    std::chrono::milliseconds first{300};
    std::chrono::milliseconds next{200};
  };

  // Never throws but std::bad_alloc.
  ProgressFile(const JobProgress& progress, const std::filesystem::path& result, Pace pace);
  ~ProgressFile();
  ProgressFile(const ProgressFile&) = delete;
  ProgressFile& operator=(const ProgressFile&) = delete;

 private:
  // False when the file is somebody else's.
  bool update(double seconds);

  const JobProgress& progress_;
  std::filesystem::path file_;
  // Used by the thread, then by the destructor.
  bool known_ = false;  // to be this job's to write
  bool written_ = false;
  std::jthread ticker_;
};

// Removes that of a job that is given up.
void removeProgress(const std::filesystem::path& result);

// Removes a file if it is a progress file that has not changed for so long that its writer must be dead. One
// that was wrongly taken for such is soon written again. Does what it can and reports no failure.
void removeAbandonedProgress(const std::filesystem::path& file);

}  // namespace genostat::analysis
