// The language of the program's texts.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace genostat::standalone {

struct TextHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
};

struct Language {
  std::string code = "en";  // as its folder of string tables is called: "de", "pt_BR"
  // From the English text. What is missing stays English.
  std::unordered_map<std::string, std::string, TextHash, std::equal_to<>> texts;
  // Makes a text of what is missing; empty: there is no such rule.
  std::function<std::string(std::string_view)> substitute;
};

// English until this was called. Before other threads start: they read it without a lock.
void setLanguage(Language language);
const Language& language();

// A language that nobody speaks, with the code "pseudo" and no table: "job '{1}' queued" is
// "[ĵøƀ '{1}' ɋúéúéđ]". What is readable in it was not looked up.
Language pseudoLanguage();

}  // namespace genostat::standalone
