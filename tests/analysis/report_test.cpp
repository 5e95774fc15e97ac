// Texts that leave the program.
#include <gtest/gtest.h>

#include "analysis/report/error_details.h"
#include "analysis/report/result_csv.h"

namespace genostat::analysis {
namespace {

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

}  // namespace
}  // namespace genostat::analysis
