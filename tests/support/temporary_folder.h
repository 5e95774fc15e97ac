// A folder for one test, removed with all that is in it.
#pragma once

#include <filesystem>
#include <string>

#include "platform/path_text.h"
#include "platform/running_program.h"

namespace genostat::test {

class TemporaryFolder {
 public:
  TemporaryFolder() : path_(createUnique()) {}
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }
  // In the system's narrow encoding, as the module takes paths.
  std::string narrow() const { return platform::pathToNarrow(path_); }
  std::string narrow(const std::string& name) const { return platform::pathToNarrow(path_ / name); }

 private:
  static std::filesystem::path createUnique() {
    const std::filesystem::path base = std::filesystem::temp_directory_path();
    for (int n = 0;; ++n) {
      const std::filesystem::path path =
          base / ("genostat_test_" + std::to_string(platform::processId()) + "_" + std::to_string(n));
      if (std::filesystem::create_directory(path)) return path;
    }
  }

  std::filesystem::path path_;
};

}  // namespace genostat::test
