#include "platform/locked_file.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <new>
#include <vector>

#include "platform/windows/kernel_object.h"

namespace genostat::platform {

namespace {

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

// Shared with nobody: that is the lock.
Handle openAlone(const std::filesystem::path& path, DWORD disposition) {
  return owned(CreateFileW(path.c_str(), GENERIC_WRITE | DELETE, 0, nullptr, disposition,
                           FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
}

}  // namespace

std::optional<LockedFile> LockedFile::create(const std::filesystem::path& path, FolderLink) {
  Handle file = openAlone(path, CREATE_NEW);
  if (file) return LockedFile(path, {}, std::move(file));
  if (file.error() != std::errc::file_exists) throw std::system_error(file.error());
  return std::nullopt;
}

std::optional<LockedFile> LockedFile::takeOver(const std::filesystem::path& path) {
  Handle file = openAlone(path, OPEN_EXISTING);
  if (!file) return std::nullopt;
  return LockedFile(path, {}, std::move(file));
}

LockedFile::~LockedFile() {
  if (!file_) return;
  // An open file cannot be deleted.
  file_.close();
  DeleteFileW(path_.c_str());
}

void LockedFile::write(std::string_view text) {
  while (!text.empty()) {
    const auto wanted = static_cast<DWORD>(std::min<std::size_t>(text.size(), 1U << 30));
    DWORD size = 0;
    if (WriteFile(kernelObject(file_), text.data(), wanted, &size, nullptr) == 0)
      throw std::system_error(lastError());
    text.remove_prefix(size);
  }
}

void LockedFile::moveTo(const std::filesystem::path& target, bool patient) {
  std::vector<std::byte> request = renameRequest(path_.parent_path() / target.filename());
  // By its handle: between closing and moving by name, another run could take it for abandoned.
  for (int attempt = 1; SetFileInformationByHandle(kernelObject(file_), FileRenameInfo, request.data(),
                                                   static_cast<DWORD>(request.size())) == 0;
       ++attempt) {
    const DWORD code = GetLastError();
    // Another run may be replacing the target, or somebody reading it, at this moment.
    if (!patient || attempt == 20 || (code != ERROR_ACCESS_DENIED && code != ERROR_SHARING_VIOLATION))
      throw std::system_error(lastError());
    Sleep(10);
  }
  file_.close();
}

void removeUnlocked(const std::filesystem::path& path) {
  // The system refuses this for a file that somebody has open.
  DeleteFileW(path.c_str());
}

}  // namespace genostat::platform
