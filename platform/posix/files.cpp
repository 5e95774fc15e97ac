#include "platform/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/posix/descriptor.h"

namespace genostat::platform {

const char kPathSeparator = '/';

bool fileExists(const std::string& path) {
  struct stat status = {};
  return stat(path.c_str(), &status) == 0 && !S_ISDIR(status.st_mode);
}

bool directoryExists(const std::string& path) {
  struct stat status = {};
  return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool regularFileExists(const std::string& path) {
  struct stat status = {};
  return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

std::unique_ptr<std::FILE, CloseFile> openRegularFile(const std::string& path) {
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  if (file < 0) return nullptr;
  struct stat status = {};
  std::unique_ptr<std::FILE, CloseFile> stream;
  if (fstat(file, &status) == 0 && S_ISREG(status.st_mode)) stream.reset(fdopen(file, "rb"));
  if (!stream) close(file);
  return stream;
}

InputProbe probeInputFile(const std::string& utf8Path) {
  // Without O_NONBLOCK the probe of a named pipe would wait for a writer.
  const Handle file(open(utf8Path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (!file) return InputProbe::Unreadable;
  struct stat status = {};
  const bool known = fstat(descriptor(file), &status) == 0;
  if (known && S_ISDIR(status.st_mode)) return InputProbe::Unreadable;
  return known && status.st_size > 0 ? InputProbe::HasData : InputProbe::Empty;
}

}  // namespace genostat::platform
