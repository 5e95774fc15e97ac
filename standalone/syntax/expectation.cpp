#include "standalone/syntax/expectation.h"

#include <algorithm>

namespace genostat::standalone {

namespace {

Expectation*& notedExpectation() {
  thread_local Expectation* noted = nullptr;
  return noted;
}

}  // namespace

ExpectationScope::ExpectationScope(Expectation& noted) {
  notedExpectation() = &noted;
}
ExpectationScope::~ExpectationScope() {
  notedExpectation() = nullptr;
}

void noteKeywords(const Token& token, std::span<const std::string_view> keywords) {
  Expectation* noted = notedExpectation();
  if (noted == nullptr || !isPlace(token)) return;
  for (const std::string_view keyword : keywords) {
    if (std::ranges::find(noted->keywords, keyword) == noted->keywords.end()) {
      noted->keywords.emplace_back(keyword);
    }
  }
}

void noteExpected(const Token& token, bool Expectation::*kind) {
  Expectation* noted = notedExpectation();
  if (noted != nullptr && isPlace(token)) noted->*kind = true;
}

}  // namespace genostat::standalone
