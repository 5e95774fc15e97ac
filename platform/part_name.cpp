#include "platform/part_name.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <stdexcept>
#include <string_view>
#include <system_error>

#include "platform/part_file.h"

namespace genostat::platform {

namespace {

constexpr std::string_view kSuffix = ".genostat-part";

// A number and the suffix; other programs' names are not like that.
bool isPartName(const std::filesystem::path& name) {
  const auto& text = name.native();
  const std::filesystem::path suffix(kSuffix);
  if (text.size() <= kSuffix.size() || !text.ends_with(suffix.native())) return false;
  return std::all_of(text.begin(), text.end() - static_cast<std::ptrdiff_t>(kSuffix.size()),
                     [](auto c) { return c >= '0' && c <= '9'; });
}

// The last folder on the way that is there.
std::filesystem::path existingPlace(const std::filesystem::path& folder) {
  std::error_code unknown;
  std::filesystem::path place = folder;
  while (!place.empty() && !std::filesystem::exists(place, unknown)) {
    const std::filesystem::path parent = place.parent_path();
    if (parent == place) break;
    place = parent;
  }
  return place.empty() ? std::filesystem::path(".") : place;
}

}  // namespace

void tryFolder(const std::filesystem::path& folder) {
  const std::filesystem::path place = existingPlace(folder);
  std::error_code unknown;
  if (!std::filesystem::is_directory(place, unknown))
    throw std::runtime_error(std::generic_category().message(ENOTDIR));
  const PartFile trial(place);
}

std::string partName(unsigned number) {
  return std::to_string(number).append(kSuffix);
}

std::vector<std::filesystem::path> partsIn(const std::filesystem::path& folder) {
  std::vector<std::filesystem::path> parts;
  std::error_code error;
  std::filesystem::directory_iterator entry(folder.empty() ? "." : folder, error);
  for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
    if (isPartName(entry->path().filename())) parts.push_back(entry->path());
  }
  return parts;
}

}  // namespace genostat::platform
