#include "common/text/nearest_word.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <system_error>
#include <vector>

#include "platform/path_text.h"

namespace genostat::common {

namespace {

constexpr std::size_t kShortestBeginning = 3;
constexpr std::size_t kLongestWord = 64;

char upperLetter(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

// Edit distance in which swapping two neighbours is one step, like inserting, dropping or
// changing a letter (optimal string alignment). Both words have at most kLongestWord bytes.
std::size_t editDistance(std::string_view a, std::string_view b) {
  using Row = std::array<std::size_t, kLongestWord + 1>;
  std::array<Row, 3> rows{};
  for (std::size_t j = 0; j <= b.size(); ++j)
    rows[0][j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    Row& row = rows[i % 3];
    const Row& above = rows[(i + 2) % 3];
    const Row& twoAbove = rows[(i + 1) % 3];
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const char x = upperLetter(a[i - 1]);
      const char y = upperLetter(b[j - 1]);
      row[j] = std::min({above[j] + 1, row[j - 1] + 1, above[j - 1] + (x == y ? 0U : 1U)});
      const bool swapped = i > 1 && j > 1 && x == upperLetter(b[j - 2]) && upperLetter(a[i - 2]) == y;
      if (swapped) row[j] = std::min(row[j], twoAbove[j - 2] + 1);
    }
  }
  return rows[a.size() % 3][b.size()];
}

}  // namespace

std::optional<std::string_view> nearestWord(std::string_view word, std::span<const std::string_view> words) {
  return nearestWord(word, words, std::max<std::size_t>(1, word.size() / 3));
}

std::optional<std::string_view> nearestWord(std::string_view word, std::span<const std::string_view> words,
                                            std::size_t most) {
  if (word.empty() || word.size() > kLongestWord) return std::nullopt;
  std::optional<std::string_view> nearest;
  std::size_t best = most + 1;
  for (const std::string_view candidate : words) {
    if (candidate.size() > kLongestWord) continue;
    std::size_t distance = editDistance(word, candidate);
    // The word may be a misspelled beginning.
    if (word.size() > kShortestBeginning) {
      distance = std::min(distance, editDistance(word, candidate.substr(0, word.size())));
    }
    if (distance >= best || distance >= word.size()) continue;
    best = distance;
    nearest = candidate;
  }
  return nearest;
}

std::string nearestPath(const std::string& path) {
  namespace fs = std::filesystem;
  // Nobody waits for a guess from a folder of millions.
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
