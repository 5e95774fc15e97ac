#include "standalone/syntax/keyword.h"

#include <algorithm>
#include <vector>

#include "common/text/ascii.h"
#include "common/text/nearest_word.h"
#include "standalone/language/translation.h"
#include "standalone/syntax/diagnostic.h"

namespace genostat::standalone {

namespace {

constexpr std::size_t kShortestAbbreviation = 3;
constexpr std::size_t kAlternativesShown = 16;

}  // namespace

std::optional<std::size_t> matchKeyword(std::string_view word, std::span<const std::string_view> keywords) {
  std::optional<std::size_t> abbreviated;
  bool unique = true;
  for (std::size_t i = 0; i < keywords.size(); ++i) {
    if (common::equalsIgnoreCase(word, keywords[i])) return i;
    if (word.size() < kShortestAbbreviation || !common::startsWithIgnoreCase(keywords[i], word)) continue;
    unique = !abbreviated;
    abbreviated = i;
  }
  return unique ? abbreviated : std::nullopt;
}

std::optional<std::string_view> nearestKeyword(std::string_view word,
                                               std::span<const std::string_view> keywords) {
  return common::nearestWord(word, keywords);
}

KeywordFault explainKeyword(std::string_view word, std::span<const std::string_view> keywords,
                            std::string_view what) {
  std::vector<std::string_view> meant;
  std::copy_if(keywords.begin(), keywords.end(), std::back_inserter(meant), [word](std::string_view keyword) {
    return !word.empty() && common::startsWithIgnoreCase(keyword, word);
  });
  const std::string quoted = quoteForMessage(word);
  if (meant.size() > 1) {
    return {translated("ambiguous {1} {2}", {what, quoted}),
            translated("it may mean {1}", {joinAlternatives(meant)})};
  }
  const std::string all = joinAlternatives(keywords);
  // One that begins with the word was meant, but the abbreviation is too short.
  const auto nearest = meant.empty() ? nearestKeyword(word, keywords) : meant.front();
  const std::string hint = keywords.empty() ? std::string()
                           : nearest        ? translated("expected {1}; did you mean {2}?", {all, *nearest})
                                            : translated("expected {1}", {all});
  return {translated("unknown {1} {2}", {what, quoted}), hint};
}

std::string joinAlternatives(std::span<const std::string_view> keywords) {
  std::string joined;
  const std::size_t shown = std::min(keywords.size(), kAlternativesShown);
  for (std::size_t i = 0; i < shown; ++i) {
    if (i > 0 && i + 1 == keywords.size()) return translated("{1} or {2}", {joined, keywords[i]});
    if (i > 0) joined += ", ";
    joined += keywords[i];
  }
  return shown < keywords.size() ? joined + ", ..." : joined;
}

}  // namespace genostat::standalone
