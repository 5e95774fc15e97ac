#include "platform/files.h"

#include "platform/windows/kernel_object.h"
#include "platform/windows/wide_text.h"

namespace genostat::platform {

const char kPathSeparator = '\\';

bool fileExists(const std::string& path) {
  const DWORD attributes = GetFileAttributesA(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

bool directoryExists(const std::string& path) {
  const DWORD attributes = GetFileAttributesA(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool regularFileExists(const std::string& path) {
  return fileExists(path);
}

std::unique_ptr<std::FILE, CloseFile> openRegularFile(const std::string& path) {
  return std::unique_ptr<std::FILE, CloseFile>(std::fopen(path.c_str(), "rb"));
}

InputProbe probeInputFile(const std::string& utf8Path) {
  const Handle file = owned(CreateFileW(widen(utf8Path, CP_UTF8).c_str(), GENERIC_READ, FILE_SHARE_READ,
                                        nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) return InputProbe::Unreadable;
  LARGE_INTEGER size = {};
  if (GetFileSizeEx(kernelObject(file), &size) == 0 || size.QuadPart == 0) return InputProbe::Empty;
  return InputProbe::HasData;
}

}  // namespace genostat::platform
