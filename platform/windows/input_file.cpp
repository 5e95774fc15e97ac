#include "platform/input_file.h"

#include <windows.h>

#include <algorithm>
#include <system_error>

namespace genostat::platform {

namespace {

HANDLE fileOf(std::intptr_t handle) {
  return reinterpret_cast<HANDLE>(handle);
}

// As the condition that is the same on every system.
[[noreturn]] void fail(DWORD code) {
  const std::error_code error(static_cast<int>(code), std::system_category());
  throw std::system_error(error.default_error_condition().value(), std::generic_category());
}

}  // namespace

InputFile::InputFile(const std::filesystem::path& path) {
  HANDLE file =
      CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) fail(GetLastError());
  handle_ = reinterpret_cast<std::intptr_t>(file);
  LARGE_INTEGER size = {};
  if (GetFileSizeEx(file, &size) != 0) size_ = static_cast<std::uint64_t>(size.QuadPart);
}

InputFile::~InputFile() {
  CloseHandle(fileOf(handle_));
}

std::size_t InputFile::readAt(std::uint64_t offset, std::span<char> into) const {
  // Without the place in this structure, threads would share the file's own one.
  OVERLAPPED place = {};
  place.Offset = static_cast<DWORD>(offset);
  place.OffsetHigh = static_cast<DWORD>(offset >> 32);
  constexpr std::size_t kMost = 1U << 30;
  DWORD size = 0;
  if (ReadFile(fileOf(handle_), into.data(), static_cast<DWORD>(std::min(into.size(), kMost)), &size,
               &place) == 0) {
    const DWORD code = GetLastError();
    if (code == ERROR_HANDLE_EOF) return 0;
    fail(code);
  }
  return size;
}

}  // namespace genostat::platform
