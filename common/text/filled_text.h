// Sentences with places for values.
#pragma once

#include <initializer_list>
#include <span>
#include <string>
#include <string_view>

namespace genostat::common {

// `pattern` with {1} to {9} replaced by the values, each of which may occur more than once or not at all.
std::string filledText(std::string_view pattern, std::span<const std::string_view> values);

// The user's words for an English text, with values as above.
using Translate = std::string (*)(std::string_view english, std::initializer_list<std::string_view> values);

// For a program that speaks English only.
std::string inEnglish(std::string_view english, std::initializer_list<std::string_view> values);

}  // namespace genostat::common
