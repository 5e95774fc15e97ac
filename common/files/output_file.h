// Files that appear under their names whole or not at all.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "platform/locked_file.h"

namespace genostat::common {

using platform::LockedFile;

// Where a path leads, links followed, whether or not there is anything; a link to nothing leads to itself.
std::filesystem::path placeOf(const std::filesystem::path& path);

// What is done about a link at a file's place, and about a pipe or another device.
enum class PlaceLink {
  Follow,   // the file is written where the link leads, a device as it stands: for names that a person gave
  Replace,  // the file takes the link's place, and a device is refused: others may have put them there
};

// A file that is to be written when the work is done. Failures are thrown as std::system_error, and its text
// is the system's reason alone; a device that is refused as std::runtime_error.
class OutputFile {
 public:
  // Fails at once where no file can come to stand, for example at a folder. Removes what runs that were
  // killed have left beside it.
  explicit OutputFile(std::filesystem::path target, PlaceLink link = PlaceLink::Follow);

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
  PlaceLink link_;
};

// A file that is written piece by piece and appears when it is whole. What is small, and what goes to a
// device, is kept in memory until then. Throws as above.
class StreamedFile {
 public:
  // `folderLink` is for the target's folder.
  explicit StreamedFile(const std::filesystem::path& target, PlaceLink link = PlaceLink::Follow,
                        LockedFile::FolderLink folderLink = LockedFile::FolderLink::Follow);

  void write(std::string_view text);
  // Gives it its name; without it nothing stays.
  void finish();

 private:
  LockedFile& part();

  std::filesystem::path place_;
  LockedFile::FolderLink folderLink_;
  bool isDevice_;
  std::string pending_;
  std::optional<LockedFile> part_;  // once there was too much for the memory
};

// The same for a text that is there.
void writeFile(const std::filesystem::path& target, std::string_view text, PlaceLink link = PlaceLink::Follow,
               LockedFile::FolderLink folderLink = LockedFile::FolderLink::Follow);

}  // namespace genostat::common
