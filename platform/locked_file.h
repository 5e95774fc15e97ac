// A file that nobody else takes while it is written.
#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

#include "platform/handle.h"

namespace genostat::platform {

// The system takes the lock away from a process that ends in whatever way. Failures are thrown as
// std::system_error, and its text is the system's reason alone.
//
// On Posix the folder is opened once and the file is reached through it only: it stays the same one, whatever
// others make of its path meanwhile. No link at the file's own name is ever followed. Until it is moved, only
// its owner can open it.
class LockedFile {
 public:
  // Whether the folder may be a link; on Windows, where few may make one, it always may.
  enum class FolderLink { Follow, Refuse };

  // None where something stands at `path`, or where another process is about to remove the new file.
  static std::optional<LockedFile> create(const std::filesystem::path& path,
                                          FolderLink link = FolderLink::Follow);
  // An existing file whose lock nobody holds. None where that is not so, or cannot be known.
  static std::optional<LockedFile> takeOver(const std::filesystem::path& path);
  LockedFile(LockedFile&&) noexcept = default;
  LockedFile& operator=(LockedFile&&) = delete;
  // Removes the file unless it was moved to its target.
  ~LockedFile();

  void write(std::string_view text);

  // Ends the writing and gives the file the last name of `target`, which is in the same folder, in place of
  // what stands there; on Posix with the permissions of that if it is a file, else with those that any new
  // file gets. A link is replaced as such. Where it may be in use (on Windows), waits a moment for it if
  // `patient`.
  void moveTo(const std::filesystem::path& target, bool patient = true);

 private:
  LockedFile(std::filesystem::path path, Handle folder, Handle file)
      : path_(std::move(path)), folder_(std::move(folder)), file_(std::move(file)) {}

  std::filesystem::path path_;
  Handle folder_;  // on Posix
  Handle file_;    // none when it was moved
};

// Removes a file unless somebody holds its lock; does what it can and reports no failure.
void removeUnlocked(const std::filesystem::path& path);

}  // namespace genostat::platform
