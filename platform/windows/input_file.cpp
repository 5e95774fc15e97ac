#include "platform/input_file.h"

#include <algorithm>
#include <system_error>

#include "platform/windows/file_handle.h"

namespace genostat::platform {

namespace {

[[noreturn]] void failToRead(DWORD code) {
  throw std::system_error(genericError(code));
}

}  // namespace

InputFile::InputFile(const std::filesystem::path& path) {
  HANDLE file =
      CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) failToRead(GetLastError());
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
    failToRead(code);
  }
  return size;
}

}  // namespace genostat::platform
