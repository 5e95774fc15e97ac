#include "platform/part_file.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <new>
#include <stdexcept>
#include <vector>

#include "platform/part_name.h"
#include "platform/windows/file_handle.h"

namespace genostat::platform {

namespace {

[[noreturn]] void failToWrite(DWORD code) {
  throw std::runtime_error(genericError(code).message());
}

// What FileRenameInfo takes: a structure that ends in the absolute target.
std::vector<std::byte> renameRequest(const std::filesystem::path& target) {
  const std::wstring name = std::filesystem::absolute(target).make_preferred().native();
  const std::size_t bytes = name.size() * sizeof(wchar_t);
  std::vector<std::byte> request(sizeof(FILE_RENAME_INFO) + bytes);
  auto* info = new (request.data()) FILE_RENAME_INFO{};
  info->ReplaceIfExists = TRUE;
  info->FileNameLength = static_cast<DWORD>(bytes);
  std::memcpy(info->FileName, name.data(), bytes);
  return request;
}

}  // namespace

PartFile::PartFile(const std::filesystem::path& folder) {
  for (DWORD number = GetCurrentProcessId();; ++number) {
    path_ = folder / partName(static_cast<unsigned>(number));
    // Shared with nobody: that is the lock.
    HANDLE file = CreateFileW(path_.c_str(), GENERIC_WRITE | DELETE, 0, nullptr, CREATE_NEW,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file != INVALID_HANDLE_VALUE) {
      handle_ = reinterpret_cast<std::intptr_t>(file);
      return;
    }
    if (GetLastError() != ERROR_FILE_EXISTS) failToWrite(GetLastError());
  }
}

PartFile::~PartFile() {
  // An open file cannot be deleted.
  close();
  if (!path_.empty()) DeleteFileW(path_.c_str());
}

void PartFile::write(std::string_view text) {
  while (!text.empty()) {
    const auto wanted = static_cast<DWORD>(std::min<std::size_t>(text.size(), 1U << 30));
    DWORD size = 0;
    if (WriteFile(fileOf(handle_), text.data(), wanted, &size, nullptr) == 0) failToWrite(GetLastError());
    text.remove_prefix(size);
  }
}

void PartFile::moveTo(const std::filesystem::path& target, bool patient) {
  std::vector<std::byte> request = renameRequest(target);
  // By its handle: between closing and moving by name, another run could take it for abandoned.
  for (int attempt = 1; SetFileInformationByHandle(fileOf(handle_), FileRenameInfo, request.data(),
                                                   static_cast<DWORD>(request.size())) == 0;
       ++attempt) {
    const DWORD code = GetLastError();
    // Another run may be replacing the target, or somebody reading it, at this moment.
    if (!patient || attempt == 20 || (code != ERROR_ACCESS_DENIED && code != ERROR_SHARING_VIOLATION))
      failToWrite(code);
    Sleep(10);
  }
  path_.clear();
  close();
}

void PartFile::close() {
  if (handle_ != -1) CloseHandle(fileOf(handle_));
  handle_ = -1;
}

void removeAbandonedParts(const std::filesystem::path& folder) {
  // The system refuses this for a file that somebody has open.
  for (const std::filesystem::path& path : partsIn(folder)) {
    DeleteFileW(path.c_str());
  }
}

}  // namespace genostat::platform
