#include "common/text/nearest_word.h"

#include <algorithm>
#include <array>

#include "common/text/ascii.h"

namespace genostat::common {

namespace {

constexpr std::size_t kShortestBeginning = 3;
constexpr std::size_t kLongestWord = 64;

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

}  // namespace genostat::common
