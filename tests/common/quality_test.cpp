#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <iterator>
#include <set>
#include <sstream>

#include "common/quality/checks.h"

namespace genostat::common {
namespace {

// The initial of the first word that no other title has, or of the last word; each letter is given once.
TEST(Checks, HaveLettersThatFollowFromTheirTitles) {
  const auto wordsOf = [](std::string title) {
    for (char& c : title) {
      c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    std::istringstream words(title);
    return std::vector<std::string>(std::istream_iterator<std::string>(words), {});
  };
  std::multiset<std::string> all;
  for (const CheckNames& names : kChecks) {
    for (const std::string& word : wordsOf(std::string(names.title))) {
      all.insert(word);
    }
  }
  std::set<char> letters;
  for (const CheckNames& names : kChecks) {
    const std::vector<std::string> words = wordsOf(std::string(names.title));
    const auto own =
        std::ranges::find_if(words, [&](const std::string& word) { return all.count(word) == 1; });
    const char initial = own == words.end() ? words.back().front() : own->front();
    EXPECT_EQ(names.letter, std::toupper(initial)) << names.title;
    EXPECT_TRUE(letters.insert(names.letter).second) << names.title;
  }
}

TEST(Verdicts, AreReadBackFromTheirWordsInAnyCase) {
  for (const Verdict verdict : {Verdict::None, Verdict::Pass, Verdict::Warn, Verdict::Fail}) {
    EXPECT_EQ(verdictNamed(verdictWord(verdict)), verdict);
  }
  EXPECT_EQ(verdictNamed("FaiL"), Verdict::Fail);
  EXPECT_EQ(verdictNamed("passed"), std::nullopt);
}

}  // namespace
}  // namespace genostat::common
