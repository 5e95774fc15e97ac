// Keywords as the user may write them: in any case, cut short to three or more letters.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace genostat::standalone {

// The index of the one keyword that `word` means: equal to it without regard to case,
// or, with three or more letters, the beginning of just one of them.
std::optional<std::size_t> matchKeyword(std::string_view word, std::span<const std::string_view> keywords);

// The keyword nearest to a misspelled word, or none when all are far off.
std::optional<std::string_view> nearestKeyword(std::string_view word,
                                               std::span<const std::string_view> keywords);

// What to say of a word that matches none of the keywords, or several.
struct KeywordFault {
  std::string message;  // unknown subcommand "JBO"
  std::string hint;     // expected JOB or PRINT; did you mean JOB?
};

// `what` says which kind of keyword was looked for: "subcommand", "keyword in JOB".
KeywordFault explainKeyword(std::string_view word, std::span<const std::string_view> keywords,
                            std::string_view what);

// "A", "A or B", "A, B or C"; a very long list is cut short.
std::string joinAlternatives(std::span<const std::string_view> keywords);

}  // namespace genostat::standalone
