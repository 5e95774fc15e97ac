// Files that appear under their names whole or not at all.
#pragma once

#include <filesystem>
#include <string_view>

namespace genostat::common {

// Where a path leads, links followed, whether or not there is anything; a link to nothing leads to itself.
std::filesystem::path placeOf(const std::filesystem::path& path);

// A file that is to be written when the work is done. Failures are thrown as std::system_error, and its text
// is the system's reason alone.
class OutputFile {
 public:
  // Fails at once where no file can come to stand, for example at a folder. Removes what runs that were
  // killed have left beside it.
  explicit OutputFile(std::filesystem::path target);

  // As writeFile().
  void write(std::string_view text) const;

  // The path as it was given.
  const std::filesystem::path& target() const { return target_; }
  // Whether it is there and no regular file: a pipe, a terminal.
  bool isDevice() const;
  bool isSameAs(const std::filesystem::path& other) const;

 private:
  std::filesystem::path target_;
  std::filesystem::path place_;
};

// Writes a part file beside the target, moves it there and removes the part files of runs that were killed. A
// device is written as it stands. Throws as above.
void writeFile(const std::filesystem::path& target, std::string_view text);

}  // namespace genostat::common
