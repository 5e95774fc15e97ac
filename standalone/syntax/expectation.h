// What may stand at one place of a command, as its own parser says.
//
// For completion: the command is parsed with a token at the place that no parser can take. What the parsers
// look for there is noted, and the first that wants to go beyond it fails. So the one definition of a
// command's grammar is its parser.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/syntax/token.h"

namespace genostat::standalone {

struct Expectation {
  std::vector<std::string> keywords;  // each once
  bool variable = false;              // one of the active dataset
  bool dataset = false;               // an open one
  bool resultColumn = false;          // a variable that a job's results will have
};

// The text of the token at the place, of kind Word. It cannot be typed.
inline constexpr std::string_view kPlaceText = "\x01";
inline bool isPlace(const Token& token) {
  return token.kind == Token::Kind::Word && token.text == kPlaceText;
}

// While it lives, what parsers on this thread look for at the place is noted. One at a time.
class ExpectationScope {
 public:
  explicit ExpectationScope(Expectation& noted);
  ~ExpectationScope();
  ExpectationScope(const ExpectationScope&) = delete;
  ExpectationScope& operator=(const ExpectationScope&) = delete;
};

// For parsers that look at a token by themselves; the cursor notes the keywords that it is asked for.
// Without effect unless the token is at the place.
void noteKeywords(const Token& token, std::span<const std::string_view> keywords);
void noteExpected(const Token& token, bool Expectation::*kind);

}  // namespace genostat::standalone
