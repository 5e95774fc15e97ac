#include "platform/input_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/posix/descriptor.h"

namespace genostat::platform {

InputFile::InputFile(const std::filesystem::path& path) : file_(open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
  if (!file_) throw std::system_error(file_.error());
  struct stat status = {};
  if (fstat(descriptor(file_), &status) == 0 && status.st_size > 0)
    size_ = static_cast<std::uint64_t>(status.st_size);
}

std::size_t InputFile::readAt(std::uint64_t offset, std::span<char> into) const {
  const ssize_t size = uninterrupted(
      [&] { return pread(descriptor(file_), into.data(), into.size(), static_cast<off_t>(offset)); });
  if (size < 0) throw std::system_error(lastError());
  return static_cast<std::size_t>(size);
}

}  // namespace genostat::platform
