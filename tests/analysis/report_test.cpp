// Texts that leave the program.
#include <gtest/gtest.h>

#include "analysis/report/error_details.h"
#include "analysis/report/number_text.h"
#include "analysis/report/result_csv.h"
#include "common/text/utf8.h"

namespace genostat::analysis {
namespace {

TEST(NumberText, HasNoExponentAndNoLocale) {
  EXPECT_EQ(fixedText(100.0 / 3, 4), "33.3333");
  EXPECT_EQ(fixedText(0, 4), "0.0000");
  EXPECT_EQ(fixedText(1e300, 0).size(), 301U);
  EXPECT_EQ(shortestText(100), "100");
  EXPECT_EQ(shortestText(1e15 + 0.5), "1000000000000000.5");
  EXPECT_EQ(integerText(18446744073709551615U), "18446744073709551615");
}

TEST(CsvField, IsQuotedOnlyWhenNeeded) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"", ""},
      {"plain name", "plain name"},
      {"a,b", "\"a,b\""},
      {"a\"b", "\"a\"\"b\""},
      {"a\nb", "\"a\nb\""},
      {"a\rb", "\"a\rb\""},
  };
  for (const auto& [text, field] : cases) {
    EXPECT_EQ(csvField(text), field);
  }
}

TEST(ErrorDetails, FilePathIsCutAtTheLastDotOfTheWholePath) {
  EXPECT_EQ(errorDetailsPath("/tmp/173.csv"), "/tmp/173.error");
  EXPECT_EQ(errorDetailsPath("C:\\run.2\\out"), "C:\\run.error");
  EXPECT_EQ(errorDetailsPath("out"), "out.error");
}

TEST(ErrorDetails, AreValidJsonWhateverTheNames) {
  EXPECT_EQ(errorDetails({ExitCode::FileNotFound, "a\"\xFF", "a\"\xFF: no such file"}),
            "{\"FILE_PATH\":\"a\\\"\xEF\xBF\xBD\",\"ERROR_MESSAGE\":\"a\\\"\xEF\xBF\xBD: no such file\"}");
}

TEST(Utf8, IsCheckedStrictly) {
  for (const char* good : {"", "abc", "\xC3\xBF", "\xE2\x82\xAC", "\xED\x9F\xBF", "\xF4\x8F\xBF\xBF"}) {
    EXPECT_TRUE(common::isValidUtf8(good)) << good;
    EXPECT_EQ(common::toValidUtf8(good), good);
  }
  for (const char* bad :
       {"\xFF", "\xC0\xAF", "\xC3", "a\x80", "\xED\xA0\x80", "\xE0\x80\x80", "\xF4\x90\x80\x80"}) {
    EXPECT_FALSE(common::isValidUtf8(bad)) << bad;
    EXPECT_TRUE(common::isValidUtf8(common::toValidUtf8(bad))) << bad;
  }
}

}  // namespace
}  // namespace genostat::analysis
