#include "platform/locked_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/posix/descriptor.h"

namespace genostat::platform {

namespace {

// What a new file's permissions are taken from by the system.
mode_t creationMask() {
  // It cannot be asked for without being set: for that moment to what lets only the owner in.
  static const mode_t kMask = [] {
    const mode_t mask = umask(077);
    umask(mask);
    return mask;
  }();
  return kMask;
}

Handle openFolder(const std::filesystem::path& folder, LockedFile::FolderLink link) {
  const int links = link == LockedFile::FolderLink::Refuse ? O_NOFOLLOW : 0;
  return Handle(open(folder.empty() ? "." : folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC | links));
}

bool isStillAt(const struct stat& file, const Handle& folder, const std::filesystem::path& name) {
  struct stat now = {};
  return fstatat(descriptor(folder), name.c_str(), &now, AT_SYMLINK_NOFOLLOW) == 0 &&
         now.st_dev == file.st_dev && now.st_ino == file.st_ino;
}

// Takes the file that was just created. False when another process is about to remove it, or has.
bool claim(const Handle& file) {
  // Where files cannot be locked, none is ever taken for abandoned either.
  if (flock(descriptor(file), LOCK_EX | LOCK_NB) != 0) return errno != EWOULDBLOCK;
  struct stat status = {};
  return fstat(descriptor(file), &status) == 0 && status.st_nlink > 0;
}

}  // namespace

std::optional<LockedFile> LockedFile::create(const std::filesystem::path& path, FolderLink link) {
  Handle folder = openFolder(path.parent_path(), link);
  if (!folder) throw std::system_error(folder.error());
  // Whoever could open it could take its lock, too.
  constexpr mode_t kOwnerOnly = 0600;
  Handle file(openat(descriptor(folder), path.filename().c_str(),
                     O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, kOwnerOnly));
  if (!file && file.error() != std::errc::file_exists) throw std::system_error(file.error());
  if (!file || !claim(file)) return std::nullopt;
  return LockedFile(path, std::move(folder), std::move(file));
}

std::optional<LockedFile> LockedFile::takeOver(const std::filesystem::path& path) {
  Handle folder = openFolder(path.parent_path(), FolderLink::Follow);
  if (!folder) return std::nullopt;
  // For writing, since some network file systems need that for a lock.
  Handle file(
      openat(descriptor(folder), path.filename().c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  if (!file) return std::nullopt;
  struct stat status = {};
  // Only its writer or the holder of its lock changes what stands at the path; so it stays what it is.
  const bool taken = fstat(descriptor(file), &status) == 0 && S_ISREG(status.st_mode) &&
                     flock(descriptor(file), LOCK_EX | LOCK_NB) == 0 &&
                     isStillAt(status, folder, path.filename());
  if (!taken) return std::nullopt;
  return LockedFile(path, std::move(folder), std::move(file));
}

LockedFile::~LockedFile() {
  // While it is locked: nobody else then removes a file of this name.
  if (file_) unlinkat(descriptor(folder_), path_.filename().c_str(), 0);
}

void LockedFile::write(std::string_view text) {
  if (!writeAll(file_, text)) throw std::system_error(lastError());
}

void LockedFile::moveTo(const std::filesystem::path& target, bool /*patient*/) {
  // Some file systems report a failed write only when a descriptor is closed; the file stays locked by the
  // other one.
  Handle copy(dup(descriptor(file_)));
  copy.close();
  if (copy.error()) throw std::system_error(copy.error());
  const std::filesystem::path name = target.filename();
  struct stat before = {};
  const bool replaces = fstatat(descriptor(folder_), name.c_str(), &before, AT_SYMLINK_NOFOLLOW) == 0 &&
                        S_ISREG(before.st_mode);
  // Who may read what stands there may read what takes its place, and nobody else. Some file systems have no
  // permissions to set.
  fchmod(descriptor(file_), replaces ? before.st_mode & 0777 : 0666 & ~creationMask());
  if (renameat(descriptor(folder_), path_.filename().c_str(), descriptor(folder_), name.c_str()) != 0)
    throw std::system_error(lastError());
  file_.close();
}

void removeUnlocked(const std::filesystem::path& path) {
  LockedFile::takeOver(path);
}

}  // namespace genostat::platform
