// Text as both programs write it.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "common/text/ascii.h"
#include "common/text/number_text.h"
#include "common/text/printable_text.h"
#include "common/text/progress_text.h"
#include "common/text/spreadsheet_text.h"
#include "common/text/utf8.h"
#include "common/text/wrapped_text.h"

namespace genostat::common {
namespace {

std::string join(const std::vector<std::string>& lines) {
  std::string joined;
  for (const std::string& line : lines) {
    joined += "[" + line + "]";
  }
  return joined;
}

TEST(Utf8, IsCheckedStrictly) {
  for (const char* good : {"", "abc", "\xC3\xBF", "\xE2\x82\xAC", "\xED\x9F\xBF", "\xF4\x8F\xBF\xBF"}) {
    EXPECT_TRUE(isValidUtf8(good)) << good;
    EXPECT_EQ(toValidUtf8(good), good);
  }
  for (const char* bad :
       {"\xFF", "\xC0\xAF", "\xC3", "a\x80", "\xED\xA0\x80", "\xE0\x80\x80", "\xF4\x90\x80\x80"}) {
    EXPECT_FALSE(isValidUtf8(bad)) << bad;
    EXPECT_TRUE(isValidUtf8(toValidUtf8(bad))) << bad;
  }
}

TEST(Utf8, CountsColumnsAndReplacesInvalidBytes) {
  struct Row {
    std::string text, valid;
    int width;
  };
  const std::string replacement = "\xEF\xBF\xBD";
  const std::vector<Row> rows = {
      {"abc", "abc", 3},
      {"\xC3\xA9", "\xC3\xA9", 1},
      {"e\xCC\x81", "e\xCC\x81", 1},                                // combining accent
      {"\xE6\x95\xB0\xE6\x8D\xAE", "\xE6\x95\xB0\xE6\x8D\xAE", 4},  // two ideographs
      {"\xF0\x9F\xA7\xAC", "\xF0\x9F\xA7\xAC", 2},                  // beyond 16 bits
      {"\xFF", replacement, 1},
      {"a\xC3", "a" + replacement, 2},                               // cut short
      {"\xC0\xAF", replacement + replacement, 2},                    // overlong
      {"\xED\xA0\x80", replacement + replacement + replacement, 3},  // surrogate
      {"\xF4\x90\x80\x80", replacement + replacement + replacement + replacement, 4},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(toValidUtf8(row.text), row.valid) << row.text;
    EXPECT_EQ(displayWidth(row.text), row.width) << row.text;
  }
}

TEST(DisplayText, ShowsWhatWouldSteerATerminal) {
  EXPECT_EQ(printableText("a\tb\r\nc\x1B[2J\x7F"), "a\\tb\\r\\nc\\x1B[2J\\x7F");
  EXPECT_EQ(printableText(std::string("\0\xC2\x9B"
                                      "1m\xE2\x80\xAE",
                                      8)),
            "\\x00\\x9B1m\\u202E");
  EXPECT_EQ(printableText("a\n\tb\r\x1B\xFF", LineBreaks::Keep), "a\n\tb\\r\\x1B\xEF\xBF\xBD");
}

TEST(DisplayText, NamesAreCutAfterAKilobyte) {
  const std::string ellipsis = "\xE2\x80\xA6";
  const auto repeated = [](const std::string& part, std::size_t count) {
    std::string text;
    while (count-- > 0)
      text += part;
    return text;
  };
  const struct {
    std::string name, shown;
  } rows[] = {
      {"a\x1B/\xFF", "a\\x1B/\xEF\xBF\xBD"},
      {std::string(1024, 'x'), std::string(1024, 'x')},
      {std::string(1025, 'x'), std::string(1021, 'x') + ellipsis},
      {repeated("\xE6\x95\xB0", 342), repeated("\xE6\x95\xB0", 340) + ellipsis},
      {repeated("\x1B", 1000), repeated("\\x1B", 255) + ellipsis},
  };
  for (const auto& [name, shown] : rows) {
    EXPECT_EQ(shownName(name), shown);
    EXPECT_EQ(quotedName(name), '"' + shown + '"');
  }
}

TEST(SpreadsheetText, ShowsFormulasAsTheyAre) {
  const struct {
    std::string csv, safe;
  } rows[] = {
      {"a,b\n-1,+x\n", "a,b\n-1,'+x\n"},
      {"=1+1,\"=1,2\"\n@a,-1.5e3", "'=1+1,\"'=1,2\"\n'@a,-1.5e3"},
      {"-,-inf,+1,-1-1\r\n\ta,,\r\n", "'-,'-inf,'+1,'-1-1\r\n'\ta,,\r\n"},
      {"\"\n=a\",\"say \"\"=\"\", @\",\"\"\"=\"\n", "\"'\n=a\",\"say \"\"=\"\", @\",\"\"\"=\"\n"},
      {"\r,a\n\"-5\",\"=open", "'\r,a\n\"-5\",\"'=open"},
      {"", ""},
  };
  for (const auto& [csv, safe] : rows) {
    EXPECT_EQ(spreadsheetCsv(csv), safe) << csv;
  }
}

TEST(DisplayText, WrapsLines) {
  struct Row {
    std::string text;
    int width;
    std::string expected;
  };
  const std::vector<Row> rows = {
      {"", 5, "[]"},
      {"Std. Deviation", 9, "[Std.][Deviation]"},
      {"  one two  three ", 7, "[one two][three]"},
      {"per_base_n_content", 8, "[per_][base_n_][content]"},
      {"abcdefghij kl", 4, "[abcd][efgh][ij][kl]"},
      {"a /very/long/path x", 10, "[a][/very/][long/path][x]"},
      {"\xE6\x95\xB0\xE6\x8D\xAE", 3, "[\xE6\x95\xB0][\xE6\x8D\xAE]"},
      {"\xE6\x95\xB0\xE6\x8D\xAE", 0, "[\xE6\x95\xB0][\xE6\x8D\xAE]"},
      {"e\xCC\x81x", 1, "[e\xCC\x81][x]"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(join(wrapText(row.text, row.width)), row.expected) << row.text;
  }
}

TEST(Utf8, IsCutBetweenCharacters) {
  const std::string text =
      "a\xC3\xA9\xE6\x95\xB0"
      "e\xCC\x81";  // of 1, 2, 3 and 1 + 2 bytes; 1, 1, 2 and 1 columns
  const std::vector<std::string> byBytes = {
      "", "a", "a", "a\xC3\xA9", "a\xC3\xA9", "a\xC3\xA9", "a\xC3\xA9\xE6\x95\xB0"};
  for (std::size_t bytes = 0; bytes < byBytes.size(); ++bytes) {
    EXPECT_EQ(cutToBytes(text, bytes), byBytes[bytes]) << bytes;
  }
  const std::vector<std::string> byWidth = {"", "a", "a\xC3\xA9", "a\xC3\xA9", "a\xC3\xA9\xE6\x95\xB0", text};
  for (std::size_t width = 0; width < byWidth.size(); ++width) {
    EXPECT_EQ(cutToWidth(text, static_cast<int>(width)), byWidth[width]) << width;
  }
  EXPECT_EQ(cutToBytes(text, 100), text);
  EXPECT_EQ(characterBefore(text, 6), 3U);
  EXPECT_EQ(characterBefore("\xA9\xA9", 2), 0U) << "no character begins here";
}

TEST(Ascii, LeavesOtherBytesAlone) {
  EXPECT_EQ(upperCase("az[`{\xC3\xA9Z9"), "AZ[`{\xC3\xA9Z9");
  EXPECT_EQ(lowerCase("AZ[`@\xC3\x89z9"), "az[`@\xC3\x89z9");
  EXPECT_TRUE(equalsIgnoreCase("aBc", "AbC"));
  EXPECT_FALSE(equalsIgnoreCase("ab", "abc"));
  EXPECT_TRUE(startsWithIgnoreCase("FREQuencies", "freq"));
  EXPECT_FALSE(startsWithIgnoreCase("fre", "FREQ"));
}

TEST(NumberText, HasNoExponentAndNoLocale) {
  EXPECT_EQ(fixedText(100.0 / 3, 4), "33.3333");
  EXPECT_EQ(fixedText(0, 4), "0.0000");
  EXPECT_EQ(fixedText(1e300, 0).size(), 301U);
  EXPECT_EQ(shortestText(100), "100");
  EXPECT_EQ(shortestText(1e15 + 0.5), "1000000000000000.5");
}

TEST(NumberText, CountsInFiveColumns) {
  const std::vector<std::pair<double, std::string>> rows = {
      {0, "0"},           {9999, "9999"},           {9999.5, "10.0k"}, {24'345, "24.3k"}, {999'499, "999k"},
      {999'500, "1.00M"}, {6'811'000'000, "6.81G"}, {1e22, "10000E"},  {NAN, ""},
  };
  for (const auto& [count, text] : rows) {
    EXPECT_EQ(shortCount(count), text) << count;
  }
}

TEST(ProgressText, WordsSizesRatesAndTimes) {
  EXPECT_EQ(percentText(1, 3), "33 %");
  EXPECT_EQ(percentText(5, 4), "100 %");
  EXPECT_EQ(sizeText(1'540'000), "1.5 MB");
  EXPECT_EQ(sizeText(230'000'000), "230 MB");
  EXPECT_EQ(sizeText(12'340'000'000), "12.3 GB");
  EXPECT_EQ(sizeNumber(500'000'000, 40'000'000'000), "0.5");
  EXPECT_EQ(rateText(3'300'000), "3.3 MB/s");
  EXPECT_EQ(rateText(9'960'000), "10 MB/s");
  const std::vector<std::pair<double, std::string>> clocks = {
      {-1, "0:00"}, {0, "0:00"}, {11.2, "0:12"}, {187, "3:07"}, {3600, "1:00:00"}, {8100, "2:15:00"}};
  for (const auto& [seconds, text] : clocks) {
    EXPECT_EQ(clockText(seconds), text) << seconds;
  }
  EXPECT_EQ(secondsLeft(1, 4, 2), 6);
  EXPECT_EQ(secondsLeft(1, 4, 1.9), std::nullopt) << "too early";
  EXPECT_EQ(secondsLeft(0, 4, 5), std::nullopt);
  EXPECT_EQ(secondsLeft(4, 4, 5), std::nullopt);
  EXPECT_EQ(secondsLeft(1, 1'000'000, 5), std::nullopt) << "longer than anybody waits";
}

}  // namespace
}  // namespace genostat::common
