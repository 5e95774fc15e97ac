#include "common/files/part_file.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "platform/path_text.h"
#include "platform/running_program.h"

namespace genostat::common {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kPartEnding = ".genostat-part";

constexpr std::chrono::hours kGivenUp{24};

// Takes "-<number>" off the end; false where there is none.
bool dropNumber(std::string_view& text) {
  const std::size_t last = text.find_last_not_of("0123456789");
  if (last == std::string_view::npos || last + 1 == text.size() || text[last] != '-') return false;
  text = text.substr(0, last);
  return true;
}

// The computer that a part file was written on; none for other files.
std::optional<std::string> hostOfPart(const fs::path& name) {
  const std::string text = platform::pathToUtf8(name);
  if (!text.ends_with(kPartEnding)) return std::nullopt;
  std::string_view rest = text;
  rest.remove_suffix(kPartEnding.size());
  if (!dropNumber(rest) || !dropNumber(rest) || rest.empty()) return std::nullopt;
  return std::string(rest);
}

bool isOlderThan(const fs::path& file, std::chrono::hours age) {
  std::error_code unknown;
  const fs::file_time_type time = fs::last_write_time(file, unknown);
  return !unknown && time < fs::file_time_type::clock::now() - age;
}

// The last folder on the way that is there.
fs::path existingPlace(const fs::path& folder) {
  std::error_code unknown;
  fs::path place = folder;
  while (!place.empty() && !fs::exists(place, unknown)) {
    const fs::path parent = place.parent_path();
    if (parent == place) break;
    place = parent;
  }
  return place.empty() ? fs::path(".") : place;
}

}  // namespace

std::string safeHostName() {
  constexpr std::size_t kLongest = 64;
  std::string name = platform::hostName().substr(0, kLongest);
  const auto isSafe = [](char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '-' || c == '_';
  };
  std::ranges::replace_if(name, std::not_fn(isSafe), '_');
  return name.empty() ? "host" : name;
}

LockedFile createPart(const fs::path& folder, LockedFile::FolderLink link) {
  constexpr int kMostTaken = 10'000;
  const std::string stem = safeHostName() + '-' + std::to_string(platform::processId()) + '-';
  for (int number = 0; number < kMostTaken; ++number) {
    const std::string name = (stem + std::to_string(number)).append(kPartEnding);
    auto file = LockedFile::create(folder / name, link);
    if (file) return std::move(*file);
  }
  throw std::system_error(std::make_error_code(std::errc::file_exists));
}

void tryFolder(const fs::path& folder) {
  const fs::path place = existingPlace(folder);
  std::error_code unknown;
  if (!fs::is_directory(place, unknown))
    throw std::system_error(std::make_error_code(std::errc::not_a_directory));
  createPart(place);
}

void removeAbandonedParts(const fs::path& folder, const SeePath& others) {
  const std::string thisHost = safeHostName();
  std::vector<fs::path> parts;
  std::error_code error;
  fs::directory_iterator entry(folder.empty() ? "." : folder, error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    const fs::path& file = entry->path();
    const std::optional<std::string> host = hostOfPart(file.filename());
    if (host && (*host == thisHost || isOlderThan(file, kGivenUp))) parts.push_back(file);
    if (!host && others) others(file);
  }
  for (const fs::path& part : parts) {
    platform::removeUnlocked(part);
  }
}

void removeAbandonedPartsOnce(const fs::path& folder, const SeePath& others) {
  static std::mutex mutex;
  static std::set<fs::path> seen;
  {
    const std::scoped_lock lock(mutex);
    if (!seen.insert(folder).second) return;
  }
  removeAbandonedParts(folder, others);
}

}  // namespace genostat::common
