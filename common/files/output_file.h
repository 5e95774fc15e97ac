// A file that appears under its name whole or not at all.
#pragma once

#include <filesystem>
#include <fstream>
#include <optional>
#include <string_view>

#include "platform/locked_file.h"

namespace genostat::common {

// Written beside the target under a passing name and moved to its own by commit(), which also removes what
// runs that were killed have left in that folder. Without a commit nothing stays. A link is followed; what is
// no file, such as a pipe, is written as it stands, opened by the first write. Every failure is thrown as
// std::runtime_error with the system's reason; that the target is a folder, at once.
class OutputFile {
 public:
  explicit OutputFile(const std::filesystem::path& target);

  void write(std::string_view text);
  void commit();

 private:
  std::filesystem::path target_;
  std::optional<platform::LockedFile> part_;  // none when the target is no file
  std::filebuf device_;
};

// Writes a whole file in the way of OutputFile.
void writeFile(const std::filesystem::path& target, std::string_view text);

}  // namespace genostat::common
