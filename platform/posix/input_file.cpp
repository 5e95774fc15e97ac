#include "platform/input_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/posix/descriptor.h"

namespace genostat::platform {

namespace {

// A pipe would be waited for until somebody writes to it.
Handle openAtOnce(const std::filesystem::path& path) {
  constexpr int kFlags = O_RDONLY | O_CLOEXEC | O_NOCTTY;
  Handle file(open(path.c_str(), kFlags | O_NONBLOCK));
  // A file that a server has lent to a client comes back in a moment; nothing but a file is lent.
  if (file.error() == std::errc::resource_unavailable_try_again) file = Handle(open(path.c_str(), kFlags));
  return file;
}

}  // namespace

InputFile::InputFile(const std::filesystem::path& path) : file_(openAtOnce(path)) {
  if (!file_) throw std::system_error(file_.error());
  struct stat status = {};
  if (fstat(descriptor(file_), &status) != 0) return;
  regular_ = S_ISREG(status.st_mode);
  if (status.st_size > 0) size_ = static_cast<std::uint64_t>(status.st_size);
}

std::size_t InputFile::readAt(std::uint64_t offset, std::span<char> into) const {
  const ssize_t size = uninterrupted(
      [&] { return pread(descriptor(file_), into.data(), into.size(), static_cast<off_t>(offset)); });
  if (size < 0) throw std::system_error(lastError());
  return static_cast<std::size_t>(size);
}

}  // namespace genostat::platform
