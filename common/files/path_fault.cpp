#include "common/files/path_fault.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <vector>

#include "common/text/nearest_word.h"
#include "common/text/printable_text.h"
#include "platform/path_text.h"

namespace genostat::common {

namespace {

// For a path at which nothing is: the path with the last name replaced by one that is there and was meant;
// empty when there is none.
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

}  // namespace

std::string cannotRead(std::string_view path, std::string_view reason, Translate translated) {
  return translated("cannot read {1}: {2}", {quotedName(path), reason});
}

std::string cannotWrite(std::string_view path, std::string_view reason, Translate translated) {
  return translated("cannot write {1}: {2}", {quotedName(path), reason});
}

std::string nothingThere(const std::string& path, Expected expected, Translate translated) {
  const std::string fault =
      expected == Expected::File ? translated("no such file", {}) : translated("no such file or folder", {});
  const std::string meant = nearestPath(path);
  return meant.empty() ? fault : translated("{1}; did you mean {2}?", {fault, shownName(meant)});
}

}  // namespace genostat::common
