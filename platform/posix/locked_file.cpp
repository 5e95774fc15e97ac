#include "platform/locked_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/posix/descriptor.h"

namespace genostat::platform {

namespace {

bool isStillAt(const struct stat& file, const std::filesystem::path& path) {
  struct stat now = {};
  return lstat(path.c_str(), &now) == 0 && now.st_dev == file.st_dev && now.st_ino == file.st_ino;
}

// Takes the file that was just created. False when another process is about to remove it, or has.
bool claim(const Handle& file) {
  // Where files cannot be locked, none is ever taken for abandoned either.
  if (flock(descriptor(file), LOCK_EX | LOCK_NB) != 0) return errno != EWOULDBLOCK;
  struct stat status = {};
  return fstat(descriptor(file), &status) == 0 && status.st_nlink > 0;
}

}  // namespace

std::optional<LockedFile> LockedFile::create(const std::filesystem::path& path) {
  Handle file(open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
  if (!file && file.error() != std::errc::file_exists) throw std::system_error(file.error());
  if (!file || !claim(file)) return std::nullopt;
  return LockedFile(path, std::move(file));
}

std::optional<LockedFile> LockedFile::takeOver(const std::filesystem::path& path) {
  // For writing, since some network file systems need that for a lock.
  Handle file(open(path.c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  if (!file) return std::nullopt;
  struct stat status = {};
  // Only its writer or the holder of its lock changes what stands at the path; so it stays what it is.
  const bool taken = fstat(descriptor(file), &status) == 0 && S_ISREG(status.st_mode) &&
                     flock(descriptor(file), LOCK_EX | LOCK_NB) == 0 && isStillAt(status, path);
  if (!taken) return std::nullopt;
  return LockedFile(path, std::move(file));
}

LockedFile::~LockedFile() {
  // While it is locked: nobody else then removes a file of this name.
  if (file_) unlink(path_.c_str());
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
  // Who may read what stands there may read what takes its place, and nobody else.
  struct stat before = {};
  if (stat(target.c_str(), &before) == 0 && S_ISREG(before.st_mode))
    fchmod(descriptor(file_), before.st_mode & 0777);
  if (rename(path_.c_str(), target.c_str()) != 0) throw std::system_error(lastError());
  file_.close();
}

void removeUnlocked(const std::filesystem::path& path) {
  LockedFile::takeOver(path);
}

}  // namespace genostat::platform
