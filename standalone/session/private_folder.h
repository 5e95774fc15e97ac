// A folder for one session's temporary files.
//
// Its name holds the computer's and a random number, so that nobody can take it before. A locked file in it
// shows that the session lives: a later session removes the folders of those that were killed.
#pragma once

#include <filesystem>
#include <optional>

#include "platform/locked_file.h"

namespace genostat::standalone {

// Two programs that share a temporary folder may choose the same name for a result file in the same
// second. A session whose user named no folder therefore makes a folder of its own.
class PrivateFolder {
 public:
  // Creates a folder below `base` that only its owner can enter. Throws std::runtime_error, with a sentence
  // for the user, when that fails.
  explicit PrivateFolder(const std::filesystem::path& base);
  // Removes it with all that is in it.
  ~PrivateFolder();
  PrivateFolder(const PrivateFolder&) = delete;
  PrivateFolder& operator=(const PrivateFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }

 private:
  bool create(const std::filesystem::path& path);

  std::filesystem::path path_;
  std::optional<platform::LockedFile> lock_;
};

// Removes the private folders below `base` whose sessions have ended without doing so: those of this user,
// made on this computer, since locks are seen no farther. Does what it can and reports no failure.
void removeAbandonedFolders(const std::filesystem::path& base);

}  // namespace genostat::standalone
