#include "platform/private_folder.h"

#include <windows.h>

#include <system_error>

#include "platform/handle.h"

namespace genostat::platform {

bool createPrivateFolder(const std::filesystem::path& path) {
  if (CreateDirectoryW(path.c_str(), nullptr) != 0) return true;
  if (GetLastError() == ERROR_ALREADY_EXISTS) return false;
  throw std::system_error(lastError());
}

bool isPrivateFolder(const std::filesystem::path& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES &&
         (attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT)) == FILE_ATTRIBUTE_DIRECTORY;
}

}  // namespace genostat::platform
