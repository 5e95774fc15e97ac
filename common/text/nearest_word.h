// Words that people misspell.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

namespace genostat::common {

// The one of `words` nearest to a misspelled one, or none when all are far off. ASCII letters count without
// regard to case, and the word may be cut short. A view of one of `words`.
std::optional<std::string_view> nearestWord(std::string_view word, std::span<const std::string_view> words);

// The same, where a word is near that is reached in `most` steps.
std::optional<std::string_view> nearestWord(std::string_view word, std::span<const std::string_view> words,
                                            std::size_t most);

}  // namespace genostat::common
