#include "standalone/session/private_folder.h"

#include <algorithm>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "common/files/part_file.h"
#include "platform/path_text.h"
#include "platform/private_folder.h"
#include "standalone/language/translation.h"
#include "standalone/session/quoted_path.h"

namespace genostat::standalone {

namespace {

namespace fs = std::filesystem;

constexpr int kMostAttempts = 100;
constexpr const char* kLockName = "session.lock";
constexpr std::string_view kDigits = "0123456789abcdef";
constexpr std::size_t kRandomDigits = 16;

std::string beginningOfNames() {
  return "genostat-" + common::safeHostName() + "-";
}

std::string randomDigits() {
  std::random_device random;
  std::uniform_int_distribution<std::size_t> digit(0, kDigits.size() - 1);
  std::string digits(kRandomDigits, '0');
  std::ranges::generate(digits, [&] { return kDigits[digit(random)]; });
  return digits;
}

bool isOurs(const fs::path& folder, const std::string& beginning) {
  const std::string name = platform::pathToUtf8(folder.filename());
  return name.starts_with(beginning) && name.size() == beginning.size() + kRandomDigits &&
         name.find_first_not_of(kDigits, beginning.size()) == std::string::npos &&
         platform::isPrivateFolder(folder);
}

std::vector<fs::path> entriesOf(const fs::path& folder) {
  std::vector<fs::path> entries;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    entries.push_back(entry->path());
  }
  return entries;
}

// The lock goes last: what is left of a removal that is itself killed is still known for abandoned.
void removeLocked(const fs::path& folder, std::optional<platform::LockedFile>& lock) {
  std::error_code ignored;
  for (const fs::path& entry : entriesOf(folder)) {
    if (entry.filename() != kLockName) fs::remove_all(entry, ignored);
  }
  lock.reset();
  fs::remove(folder, ignored);
}

// None where a session holds it.
std::optional<platform::LockedFile> lockOf(const fs::path& folder) {
  std::optional<platform::LockedFile> taken = platform::LockedFile::takeOver(folder / kLockName);
  return taken ? std::move(taken) : platform::LockedFile::create(folder / kLockName);
}

void removeUnlessInUse(const fs::path& folder) {
  // An empty one has no lock yet, or none any more. Whoever is making it takes another.
  std::error_code ignored;
  if (fs::remove(folder, ignored)) return;
  std::optional<platform::LockedFile> lock = lockOf(folder);
  if (lock) removeLocked(folder, lock);
}

}  // namespace

PrivateFolder::PrivateFolder(const fs::path& base) {
  try {
    const std::string beginning = beginningOfNames();
    for (int n = 0; n < kMostAttempts; ++n) {
      if (create(base / (beginning + randomDigits()))) return;
    }
    throw std::system_error(std::make_error_code(std::errc::file_exists));
  } catch (const std::system_error& error) {
    throw std::runtime_error(
        translated("cannot make a folder in the temporary folder {1}: {2} (--temp chooses another)",
                   {quotedPath(base), translatedReason(error.code().message())}));
  }
}

// False where the name is taken, or another session has removed the folder before it was locked.
bool PrivateFolder::create(const fs::path& path) {
  if (!platform::createPrivateFolder(path)) return false;
  try {
    auto lock = platform::LockedFile::create(path / kLockName);
    if (!lock) return false;
    lock_.emplace(std::move(*lock));
  } catch (const std::system_error& error) {
    if (error.code() == std::errc::no_such_file_or_directory) return false;
    std::error_code ignored;
    fs::remove(path, ignored);
    throw;
  }
  path_ = path;
  return true;
}

PrivateFolder::~PrivateFolder() {
  removeLocked(path_, lock_);
}

void removeAbandonedFolders(const fs::path& base) {
  const std::string beginning = beginningOfNames();
  for (const fs::path& folder : entriesOf(base)) {
    try {
      if (isOurs(folder, beginning)) removeUnlessInUse(folder);
    } catch (const std::exception&) {
      // In use, or it cannot be removed.
    }
  }
}

}  // namespace genostat::standalone
