#include "platform/private_folder.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "platform/handle.h"

namespace genostat::platform {

bool createPrivateFolder(const std::filesystem::path& path) {
  // With its permissions from the first moment on.
  if (mkdir(path.c_str(), S_IRWXU) == 0) return true;
  if (errno == EEXIST) return false;
  throw std::system_error(lastError());
}

bool isPrivateFolder(const std::filesystem::path& path) {
  struct stat status = {};
  return lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == geteuid() &&
         (status.st_mode & (S_IRWXG | S_IRWXO)) == 0;
}

}  // namespace genostat::platform
