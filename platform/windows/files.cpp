#include "platform/files.h"

#include "platform/windows/kernel_object.h"

namespace genostat::platform {

namespace {

std::wstring widenUtf8(const std::string& text) {
  const int size = static_cast<int>(text.size());
  const int length = MultiByteToWideChar(CP_UTF8, 0, text.data(), size, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(length), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, text.data(), size, wide.data(), length);
  return wide;
}

}  // namespace

const char kPathSeparator = '\\';

bool fileExists(const std::string& path) {
  const DWORD attributes = GetFileAttributesA(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

bool directoryExists(const std::string& path) {
  const DWORD attributes = GetFileAttributesA(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

InputProbe probeInputFile(const std::string& utf8Path) {
  const Handle file = owned(CreateFileW(widenUtf8(utf8Path).c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                        OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) return InputProbe::Unreadable;
  LARGE_INTEGER size = {};
  if (GetFileSizeEx(kernelObject(file), &size) == 0 || size.QuadPart == 0) return InputProbe::Empty;
  return InputProbe::HasData;
}

}  // namespace genostat::platform
