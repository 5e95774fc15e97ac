// Records: rules, places of errors, line ends, boundaries of chunks.
#include "analysis/fastq/record_cutter.h"

#include <gtest/gtest.h>

#include <array>
#include <random>

#include "tests/analysis/cut_text.h"
#include "tests/analysis/reference_parser.h"

namespace genostat::analysis {
namespace {

using test::CutResult;
using test::ReferenceResult;
using Sizes = std::vector<std::size_t>;

const Sizes kWhole = {std::size_t{1} << 30};

TEST(RecordCutter, TellsWhatIsWrongAndWhere) {
  struct Case {
    std::string text;
    std::string error;
  };
  const std::string good = "@r\nACGT\n+\nIIII\n";
  const std::vector<Case> cases = {
      {"", "the file is empty"},
      {"\n\r\n\n", "the file holds no records"},
      {"\r", "the file holds no records"},
      {good + "\n\n" + good + "\r\n", ""},
      {good + "\r", ""},
      {"@r\r\nACGT\r\n+\r\nIIII", ""},
      {"@r\nACGT\n+\nIIII\r", ""},
      {"@r\n\n+\n\n", ""},
      {"@r\n\n+\n", "record 1, line 4: the file ends inside the record, before its quality"},
      {"@r\r\n\r\n+\r\n", "record 1, line 4: the file ends inside the record, before its quality"},
      {"@r\nT...\n+\nIIII\n", ""},
      {"@r\n\n+", "record 1, line 4: the file ends inside the record, before its quality"},
      {good + "ACGT\n", "record 2, line 5: the header starts with 'A' instead of '@'"},
      {good + "\r@r\nA\n+\nI\n", "record 2, line 5: the header starts with a line end instead of '@'"},
      {"\xEF\xBB\xBF" + good, "record 1, line 1: the header starts with character code 239 instead of '@'"},
      {std::string(100, '\x07'), "record 1, line 1: the header starts with character code 7 instead of '@'"},
      {"@r\nACGT\nACGT\n+\n", "record 1, line 3: the third line starts with 'A' instead of '+'"},
      {"@r\nACGT\n\n", "record 1, line 3: the third line starts with a line end instead of '+'"},
      {good + "\n@r\nACGTA\n+\nIIII\n", "record 2, line 9: the quality has 4 characters, the sequence 5"},
      {"@r\nACGT\n+\nII\x7FI\n",
       "record 1, line 4: the quality has character code 127 at position 3; allowed are '!' to '~'"},
      {"@r\nAC\n+\nI \n",
       "record 1, line 4: the quality has character code 32 at position 2; allowed are '!' to '~'"},
      {good + "@r", "record 2, line 6: the file ends inside the record, before its sequence"},
      {good + "@r\nACGT\n", "record 2, line 7: the file ends inside the record, before its '+' line"},
      {good + "@r\nACGT\n+\n", "record 2, line 8: the file ends inside the record, before its quality"},
      {"@r\nT012.3\n+\nIIIII\n",
       "record 1, line 2: the read is in colour space (a base followed by digits); only reads of bases can "
       "be analysed"},
  };
  for (const Case& one : cases) {
    EXPECT_EQ(test::parseSlowly(one.text).error, one.error) << one.text;
    for (const Sizes& sizes : {kWhole, Sizes{1}, Sizes{1, 0}}) {
      EXPECT_EQ(test::cutInChunks(one.text, sizes).error, one.error) << one.text;
    }
  }
}

// Or a file that holds no line feed would be read into memory.
TEST(RecordCutter, RefusesAHeaderWithoutEnd) {
  const std::string good = "@r\nACGT\n+\nIIII\n";
  const std::string longest = "@" + std::string((1 << 20) - 1, 'x');
  const std::string error = "record 2, line 5: the header has more than 1048576 characters";
  const std::vector<std::pair<std::string, std::string>> cases = {
      {good + longest + good.substr(2), ""},
      {good + longest + "x" + good.substr(2), error},
      {good + longest + "xx", error}};
  for (const auto& [text, expected] : cases) {
    EXPECT_EQ(test::parseSlowly(text).error, expected);
    for (const Sizes& sizes : {kWhole, Sizes{1'000}, Sizes{1 << 20}}) {
      EXPECT_EQ(test::cutInChunks(text, sizes).error, expected);
    }
  }
}

// Text that breaks off is reported after the records before it, at the line that is not complete.
TEST(RecordCutter, TellsWhereTheTextBreaksOff) {
  const std::string good = "@r\nACGT\n+\nIIII\n";
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"", "record 1, line 1: torn"},
      {good, "record 2, line 5: torn"},
      {good + "\n\r\n", "record 2, line 7: torn"},
      {good + "\r", "record 2, line 5: torn"},
      {good + "@r\nAC", "record 2, line 6: torn"},
      {good + "@r\nAC\n+\n", "record 2, line 8: torn"},
      {good + "@r\nAC\n+\nII", "record 2, line 8: torn"},
      {good + "@r\n\n+\n", "record 2, line 8: torn"},
      {good + "@r\nAC\nx", "record 2, line 7: the third line starts with 'x' instead of '+'"},
      {good + "x", "record 2, line 5: the header starts with 'x' instead of '@'"},
  };
  for (const auto& [text, error] : cases) {
    for (const Sizes& sizes : {kWhole, Sizes{1}, Sizes{7, 0}}) {
      const CutResult result = test::cutInChunks(text, sizes, "torn");
      EXPECT_EQ(result.error, error) << text;
      EXPECT_EQ(result.records.size(), text.empty() ? 0U : 1U) << text;
    }
  }
}

// Random texts, most of them wrong somewhere: same records and same error as the reference for every size of
// the chunks.
TEST(RecordCutter, AgreesWithTheReferenceOnRandomText) {
  std::mt19937 random(20240611);
  const std::vector<std::string> pieces = {
      "@r",
      "@",
      "A",
      "acgtn",
      "+",
      "+x",
      "I",
      "!!!!!",
      "~",
      " ",
      "T01.2",
      "\r",
      "\n",
      "\n",
      "\n",
      "\r\n",
      "\n\n",
      "@r 1\nACGTN\n+\nIIIII\n",
      "@\r\nacg\r\n+\r\n@+I\r\n",
      "@\n\n+\n\n",
      "@long\n" + std::string(300, 'G') + "\n+\n" + std::string(300, '@') + "\n"};
  const auto below = [&](std::size_t limit) { return std::size_t{random() % limit}; };
  std::size_t accepted = 0;
  for (int round = 0; round < 600; ++round) {
    std::string text;
    // Whole records first in most rounds, so that errors come late as well as early.
    for (std::size_t n = below(8); n > 0; --n) {
      text += pieces[pieces.size() - 1 - below(4)];
    }
    for (std::size_t n = round % 3 == 0 ? 0 : below(12); n > 0; --n) {
      text += pieces[below(pieces.size())];
    }
    const ReferenceResult expected = test::parseSlowly(text);
    accepted += expected.error.empty();
    std::vector<Sizes> forms = {kWhole, {1}, {2}, {3}, {64}, {1 + below(20), below(20), below(400)}};
    for (const Sizes& sizes : forms) {
      const CutResult result = test::cutInChunks(text, sizes);
      ASSERT_EQ(result.error, expected.error) << text << "\nchunks of " << testing::PrintToString(sizes);
      ASSERT_EQ(result.records, expected.records) << text << "\nchunks of " << testing::PrintToString(sizes);
      ASSERT_TRUE(result.countsAgree) << text << "\nchunks of " << testing::PrintToString(sizes);
    }
  }
  EXPECT_GT(accepted, 80U);
  EXPECT_LT(accepted, 520U);
}

TEST(RecordCutter, PutsLongReadsTogether) {
  std::string text;
  for (const std::size_t length : {100'000U, 3U, 2'200'001U, 0U, 262'144U}) {
    text += "@r\n" + std::string(length, 'C') + "\n+\n" + std::string(length, 'J') + "\n";
  }
  const auto expected = test::parseSlowly(text).records;
  for (const std::size_t size : {std::size_t{1} << 12, std::size_t{1} << 18}) {
    EXPECT_EQ(test::cutInChunks(text, Sizes{size}).records, expected);
  }
}

}  // namespace
}  // namespace genostat::analysis
