#include "platform/part_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <stdexcept>
#include <system_error>

#include "platform/part_name.h"

namespace genostat::platform {

namespace {

[[noreturn]] void fail(int code) {
  throw std::runtime_error(std::generic_category().message(code));
}

bool isStillAt(const struct stat& file, const std::filesystem::path& path) {
  struct stat now = {};
  return lstat(path.c_str(), &now) == 0 && now.st_dev == file.st_dev && now.st_ino == file.st_ino;
}

// Takes the file that was just created. False when another process is about to remove it, or has.
bool claim(int file) {
  // Where files cannot be locked, none is ever taken for abandoned either.
  if (flock(file, LOCK_EX | LOCK_NB) != 0) return errno != EWOULDBLOCK;
  struct stat status = {};
  return fstat(file, &status) == 0 && status.st_nlink > 0;
}

}  // namespace

PartFile::PartFile(const std::filesystem::path& folder) {
  for (auto number = static_cast<unsigned>(getpid());; ++number) {
    path_ = folder / partName(number);
    const int file = open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (file < 0 && errno != EEXIST) fail(errno);
    if (file < 0) continue;
    if (claim(file)) {
      handle_ = file;
      return;
    }
    ::close(file);
  }
}

PartFile::~PartFile() {
  // While it is locked: nobody else then removes a file of this name.
  if (!path_.empty()) unlink(path_.c_str());
  close();
}

void PartFile::write(std::string_view text) {
  while (!text.empty()) {
    const ssize_t size = ::write(static_cast<int>(handle_), text.data(), text.size());
    if (size < 0 && errno != EINTR) fail(errno);
    if (size > 0) text.remove_prefix(static_cast<std::size_t>(size));
  }
}

void PartFile::moveTo(const std::filesystem::path& target, bool /*patient*/) {
  // Some file systems tell of a failed write only when a descriptor is closed; the file stays locked by the
  // other one.
  const int copy = dup(static_cast<int>(handle_));
  if (copy < 0 || ::close(copy) != 0) fail(errno);
  // Who may read what stands there may read what takes its place, and nobody else.
  struct stat before = {};
  if (stat(target.c_str(), &before) == 0 && S_ISREG(before.st_mode))
    fchmod(static_cast<int>(handle_), before.st_mode & 0777);
  if (rename(path_.c_str(), target.c_str()) != 0) fail(errno);
  path_.clear();
  close();
}

void PartFile::close() {
  if (handle_ >= 0) ::close(static_cast<int>(handle_));
  handle_ = -1;
}

void removeAbandonedParts(const std::filesystem::path& folder) {
  for (const std::filesystem::path& path : partsIn(folder)) {
    // For writing, since some network file systems need that for a lock.
    const int file = open(path.c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (file < 0) continue;
    struct stat status = {};
    // Only its writer or the holder of its lock changes what stands at the path; so it stays what it is.
    if (fstat(file, &status) == 0 && S_ISREG(status.st_mode) && flock(file, LOCK_EX | LOCK_NB) == 0 &&
        isStillAt(status, path)) {
      unlink(path.c_str());
    }
    close(file);
  }
}

}  // namespace genostat::platform
