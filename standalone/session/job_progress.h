// How far a running analysis is, as its file beside the result says.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace genostat::standalone {

// A sample that is being read.
struct SampleProgress {
  std::string name;         // as the result's first column will spell it; UTF-8, control characters possible
  std::uint64_t bytes = 0;  // read so far, as stored
  std::uint64_t size = 0;   // of the file, as stored; 0 where it is not known
  std::uint64_t reads = 0;  // seen so far
};

struct JobProgress {
  std::uint64_t samples = 0;   // in all
  std::uint64_t finished = 0;  // of them, whether measured or given up
  std::uint64_t bytesDone = 0;
  std::uint64_t bytesTotal = 0;  // of all files, as stored; 0 where it is not known
  std::uint64_t readsDone = 0;   // seen so far, of all samples
  double seconds = 0;            // since the job began
  std::vector<SampleProgress> running;
};

// The file with the progress of the job with this result file; it need not exist.
std::filesystem::path progressFileOf(const std::filesystem::path& csv);

// Nothing for what is missing, too large, half-written or something else. Never waits, never throws but
// std::bad_alloc. Any thread.
std::optional<JobProgress> readJobProgress(const std::filesystem::path& file);

// The progress file in a folder that was written last, unless it has stood still for a while: then its writer
// was ended. Nothing when there is none. For a folder whose jobs run one at a time, such as a session's own.
std::optional<std::filesystem::path> findProgressFile(const std::filesystem::path& folder);

}  // namespace genostat::standalone
