// A file on its way: written under a passing name, then moved to its own in one step.
//
// The passing name is "<number>.genostat-part". Whoever writes it keeps it locked, and the system takes the
// lock away from a process that ends in whatever way; so any later run can tell what a dead one left behind.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string_view>

namespace genostat::platform {

// Every failure is thrown as std::runtime_error with the system's reason.
class PartFile {
 public:
  // Creates the file in the folder; an empty path is the current one.
  explicit PartFile(const std::filesystem::path& folder);
  // Removes the file unless it was moved.
  ~PartFile();
  PartFile(const PartFile&) = delete;
  PartFile& operator=(const PartFile&) = delete;

  void write(std::string_view text);

  // Ends the writing and moves the file to `target`, on the same file system, in place of what stands there;
  // on Posix with the permissions of that. Where it may be in use (on Windows), waits a moment for it if
  // `patient`.
  void moveTo(const std::filesystem::path& target, bool patient = true);

 private:
  void close();

  std::filesystem::path path_;  // empty when it was moved
  std::intptr_t handle_ = -1;   // as the system knows it; -1 is none
};

// Makes sure that a file could be written in this folder or, when it is missing, where it would be made.
// Throws as above.
void tryFolder(const std::filesystem::path& folder);

// Removes the part files in a folder whose writers are no longer alive. Does what it can and tells no
// failure.
void removeAbandonedParts(const std::filesystem::path& folder);

}  // namespace genostat::platform
