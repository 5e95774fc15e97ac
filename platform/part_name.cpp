#include "platform/part_name.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <system_error>

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

}  // namespace

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
