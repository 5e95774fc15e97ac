#include "common/files/nearest_path.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <vector>

#include "common/text/nearest_word.h"
#include "platform/path_text.h"

namespace genostat::common {

std::string nearestPath(const std::string& path) {
  namespace fs = std::filesystem;
  // Looking through a folder of millions would take too long for a guess.
  constexpr std::size_t kMostNames = 10'000;
  fs::path given = platform::pathFromUtf8(path);
  if (!given.has_filename()) given = given.parent_path();
  const std::string name = platform::pathToUtf8(given.filename());
  const fs::path folder = given.parent_path();
  std::vector<std::string> names;
  std::error_code error;
  for (fs::directory_iterator entry(folder.empty() ? fs::path(".") : folder, error), end;
       !error && entry != end && names.size() < kMostNames; entry.increment(error)) {
    names.push_back(platform::pathToUtf8(entry->path().filename()));
  }
  // The same guess each time.
  std::sort(names.begin(), names.end());
  const std::vector<std::string_view> views(names.begin(), names.end());
  // Endings are alike in all names, and would let any of them seem near.
  const std::size_t stem = std::min(name.find('.', 1), name.size());
  const auto nearest = nearestWord(name, views, std::max<std::size_t>(1, stem / 3));
  if (!nearest) return {};
  // The rest stays as it was written, its separators too.
  return path.substr(0, path.rfind(name)) + std::string(*nearest);
}

}  // namespace genostat::common
