// A folder for one session's temporary files.
#pragma once

#include <filesystem>

namespace genostat::standalone {

// Two programs that share a temporary folder may choose the same name for a result file in the same
// second. A session whose user named no folder therefore makes a folder of its own.
class PrivateFolder {
 public:
  // Creates a folder below `base` that only its owner can enter; no folder when that fails, or when
  // `base` is empty.
  explicit PrivateFolder(const std::filesystem::path& base);
  ~PrivateFolder() { remove(); }
  PrivateFolder(const PrivateFolder&) = delete;
  PrivateFolder& operator=(const PrivateFolder&) = delete;

  // Empty when there is no folder.
  const std::filesystem::path& path() const { return path_; }
  // Removes the folder with all that is in it.
  void remove();

 private:
  std::filesystem::path path_;
};

}  // namespace genostat::standalone
