// The lines of earlier runs, in a file that several programs may use at once.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace genostat::platform {

// One entry as a line of the file: a line feed as \n, a backslash as \\ .
std::string historyLine(std::string_view entry);
std::string historyEntry(std::string_view line);

class LineHistory {
 public:
  static constexpr std::size_t kMostEntries = 1000;

  // The file is made when there is something to keep, for its owner alone. An empty path keeps nothing.
  explicit LineHistory(std::filesystem::path file) : file_(std::move(file)) {}

  // The latest entries, oldest first; none when the file cannot be read. Cuts a file that has grown to
  // twice as many.
  std::vector<std::string> load() const;

  // False when the file cannot be written.
  bool append(std::string_view entry) const;

 private:
  std::filesystem::path file_;
};

}  // namespace genostat::platform
