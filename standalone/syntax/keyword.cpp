#include "standalone/syntax/keyword.h"

#include <algorithm>
#include <array>
#include <vector>

#include "standalone/syntax/diagnostic.h"

namespace genostat::standalone {

namespace {

constexpr std::size_t kShortestAbbreviation = 3;
constexpr std::size_t kLongestKeyword = 64;
constexpr std::size_t kAlternativesShown = 16;

char upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

bool beginsWith(std::string_view keyword, std::string_view word) {
  return word.size() <= keyword.size() && equalsIgnoreCase(keyword.substr(0, word.size()), word);
}

// Edit distance in which swapping two neighbours is one step, like inserting, dropping or
// changing a letter (optimal string alignment). Both words have at most kLongestKeyword bytes.
std::size_t editDistance(std::string_view a, std::string_view b) {
  using Row = std::array<std::size_t, kLongestKeyword + 1>;
  std::array<Row, 3> rows{};
  for (std::size_t j = 0; j <= b.size(); ++j)
    rows[0][j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    Row& row = rows[i % 3];
    const Row& above = rows[(i + 2) % 3];
    const Row& twoAbove = rows[(i + 1) % 3];
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const char x = upper(a[i - 1]);
      const char y = upper(b[j - 1]);
      row[j] = std::min({above[j] + 1, row[j - 1] + 1, above[j - 1] + (x == y ? 0U : 1U)});
      const bool swapped = i > 1 && j > 1 && x == upper(b[j - 2]) && upper(a[i - 2]) == y;
      if (swapped) row[j] = std::min(row[j], twoAbove[j - 2] + 1);
    }
  }
  return rows[a.size() % 3][b.size()];
}

}  // namespace

std::optional<std::size_t> matchKeyword(std::string_view word, std::span<const std::string_view> keywords) {
  std::optional<std::size_t> abbreviated;
  bool unique = true;
  for (std::size_t i = 0; i < keywords.size(); ++i) {
    if (equalsIgnoreCase(word, keywords[i])) return i;
    if (word.size() < kShortestAbbreviation || !beginsWith(keywords[i], word)) continue;
    unique = !abbreviated;
    abbreviated = i;
  }
  return unique ? abbreviated : std::nullopt;
}

std::optional<std::string_view> nearestKeyword(std::string_view word,
                                               std::span<const std::string_view> keywords) {
  if (word.empty() || word.size() > kLongestKeyword) return std::nullopt;
  std::optional<std::string_view> nearest;
  std::size_t best = std::max<std::size_t>(1, word.size() / 3) + 1;
  for (const std::string_view keyword : keywords) {
    if (keyword.size() > kLongestKeyword) continue;
    std::size_t distance = editDistance(word, keyword);
    // The word may be a misspelled abbreviation.
    if (word.size() > kShortestAbbreviation) {
      distance = std::min(distance, editDistance(word, keyword.substr(0, word.size())));
    }
    if (distance >= best || distance >= word.size()) continue;
    best = distance;
    nearest = keyword;
  }
  return nearest;
}

KeywordFault explainKeyword(std::string_view word, std::span<const std::string_view> keywords,
                            std::string_view what) {
  std::vector<std::string_view> meant;
  std::copy_if(keywords.begin(), keywords.end(), std::back_inserter(meant),
               [word](std::string_view keyword) { return !word.empty() && beginsWith(keyword, word); });
  const std::string name = std::string(what) + " " + quoteForMessage(word);
  if (meant.size() > 1) return {"ambiguous " + name, "it may mean " + joinAlternatives(meant)};
  std::string hint = keywords.empty() ? std::string() : "expected " + joinAlternatives(keywords);
  // One that begins with the word was meant, but the abbreviation is too short.
  const auto nearest = meant.empty() ? nearestKeyword(word, keywords) : meant.front();
  if (nearest) hint += "; did you mean " + std::string(*nearest) + "?";
  return {"unknown " + name, hint};
}

std::string joinAlternatives(std::span<const std::string_view> keywords) {
  std::string joined;
  const std::size_t shown = std::min(keywords.size(), kAlternativesShown);
  for (std::size_t i = 0; i < shown; ++i) {
    if (i > 0) joined += i + 1 == keywords.size() ? " or " : ", ";
    joined += keywords[i];
  }
  return shown < keywords.size() ? joined + ", ..." : joined;
}

bool equalsIgnoreCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return upper(x) == upper(y); });
}

std::string toUpperAscii(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), upper);
  return result;
}

}  // namespace genostat::standalone
