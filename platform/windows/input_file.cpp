#include "platform/input_file.h"

#include <algorithm>

#include "platform/windows/kernel_object.h"

namespace genostat::platform {

InputFile::InputFile(const std::filesystem::path& path)
    : file_(owned(CreateFileW(path.c_str(), GENERIC_READ,
                              FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                              FILE_ATTRIBUTE_NORMAL, nullptr))) {
  if (!file_) throw std::system_error(file_.error());
  regular_ = GetFileType(kernelObject(file_)) == FILE_TYPE_DISK;
  LARGE_INTEGER size = {};
  if (GetFileSizeEx(kernelObject(file_), &size) != 0) size_ = static_cast<std::uint64_t>(size.QuadPart);
}

std::size_t InputFile::readAt(std::uint64_t offset, std::span<char> into) const {
  // Without the place in this structure, threads would share the file's own one.
  OVERLAPPED place = {};
  place.Offset = static_cast<DWORD>(offset);
  place.OffsetHigh = static_cast<DWORD>(offset >> 32);
  constexpr std::size_t kMost = 1U << 30;
  DWORD size = 0;
  if (ReadFile(kernelObject(file_), into.data(), static_cast<DWORD>(std::min(into.size(), kMost)), &size,
               &place) == 0) {
    if (GetLastError() == ERROR_HANDLE_EOF) return 0;
    throw std::system_error(lastError());
  }
  return size;
}

}  // namespace genostat::platform
