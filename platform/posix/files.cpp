#include "platform/files.h"

#include <fcntl.h>
#include <sys/stat.h>

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
