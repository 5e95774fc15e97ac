// What a run that was killed leaves beside its result.
#pragma once

#include <algorithm>
#include <filesystem>

#include "common/files/part_file.h"
#include "tests/support/run_program.h"

namespace genostat::test {

// A part file as one of this computer's, without the lock of a writer.
inline std::filesystem::path leaveAbandonedPart(const std::filesystem::path& folder) {
  const std::vector<std::string> before = namesIn(folder);
  std::filesystem::path path;
  {
    const auto part = common::createPart(folder);
    for (const std::string& name : namesIn(folder)) {
      if (!std::binary_search(before.begin(), before.end(), name)) path = folder / name;
    }
  }
  writeWholeFile(path, "half");
  return path;
}

}  // namespace genostat::test
