#include "platform/input_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace genostat::platform {

InputFile::InputFile(const std::filesystem::path& path) {
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) throw std::system_error(errno, std::generic_category());
  handle_ = file;
  struct stat status = {};
  if (fstat(file, &status) == 0 && status.st_size > 0) size_ = static_cast<std::uint64_t>(status.st_size);
}

InputFile::~InputFile() {
  close(static_cast<int>(handle_));
}

std::size_t InputFile::readAt(std::uint64_t offset, std::span<char> into) const {
  for (;;) {
    const ssize_t size =
        pread(static_cast<int>(handle_), into.data(), into.size(), static_cast<off_t>(offset));
    if (size >= 0) return static_cast<std::size_t>(size);
    if (errno != EINTR) throw std::system_error(errno, std::generic_category());
  }
}

}  // namespace genostat::platform
