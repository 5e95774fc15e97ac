#include "common/files/part_file.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "platform/running_program.h"

namespace genostat::common {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kPartEnding = ".genostat-part";

// A number and the ending; other programs' names are not like that.
bool isPartName(const fs::path& name) {
  const auto& text = name.native();
  const fs::path ending(kPartEnding);
  if (text.size() <= kPartEnding.size() || !text.ends_with(ending.native())) return false;
  return std::all_of(text.begin(), text.end() - static_cast<std::ptrdiff_t>(kPartEnding.size()),
                     [](auto c) { return c >= '0' && c <= '9'; });
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

platform::LockedFile createPart(const fs::path& folder) {
  for (auto number = static_cast<unsigned>(platform::processId());; ++number) {
    auto file = platform::LockedFile::create(folder / std::to_string(number).append(kPartEnding));
    if (file) return std::move(*file);
  }
}

void tryFolder(const fs::path& folder) {
  const fs::path place = existingPlace(folder);
  std::error_code unknown;
  if (!fs::is_directory(place, unknown))
    throw std::system_error(std::make_error_code(std::errc::not_a_directory));
  createPart(place);
}

void removeAbandonedParts(const fs::path& folder) {
  std::vector<fs::path> parts;
  std::error_code error;
  fs::directory_iterator entry(folder.empty() ? "." : folder, error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    if (isPartName(entry->path().filename())) parts.push_back(entry->path());
  }
  for (const fs::path& part : parts) {
    platform::removeUnlocked(part);
  }
}

}  // namespace genostat::common
