// The samples that an analysis could not read and went on without, as its file beside the result says.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace genostat::standalone {

struct UnreadSample {
  std::string name;    // as in the result's first column
  std::string reason;  // a sentence without a period
};

// The file for the job with this result file; it need not exist.
std::filesystem::path unreadFileOf(const std::filesystem::path& csv);

// In the order of the result's rows. Nothing for what is missing or something else.
std::vector<UnreadSample> readUnreadSamples(const std::filesystem::path& csv);

}  // namespace genostat::standalone
