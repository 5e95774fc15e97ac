// The user's words: every text that people read passes through here.
//
// A text is written in English where it is shown, and its English is its key in the tables of other
// languages:
//
//   translated("job '{1}' queued", {name})
//
// The text is a literal, so that scripts/check_texts.py can compare the tables with the sources; what varies
// is a numbered value. Commands, keywords, options, names of variables and data are values or stay as they
// are.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

namespace genostat::standalone {

// UTF-8. The English text where the language has none. Any thread.
std::string translated(std::string_view english);

// `{1}` to `{9}` are replaced by the values, each of which may occur more than once or not at all.
std::string translated(std::string_view english, std::initializer_list<std::string_view> values);

// One of two texts, in which `{1}` is the count: translatedCount(3, "{1} sample", "{1} samples").
std::string translatedCount(std::uint64_t count, std::string_view one, std::string_view many);
// With further values, from `{2}` on.
std::string translatedCount(std::uint64_t count, std::string_view one, std::string_view many,
                            std::initializer_list<std::string_view> values);

// Marks a text in a table that is translated where the table is used: {"MEAN", marked("Mean")}.
constexpr const char* marked(const char* english) {
  return english;
}

// Why the system refused something: its message in the user's language, as far as it is one of those that
// users see: "no space left on device". Others, and those of systems that speak the user's language
// themselves, stay as they are.
std::string translatedReason(std::string_view message);

}  // namespace genostat::standalone
