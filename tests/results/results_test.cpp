// Counts of result files, the template filler, and the columns that are imported.
#include <gtest/gtest.h>

#include <fstream>

#include "common/quality/checks.h"
#include "results/csv_counts.h"
#include "results/number_text.h"
#include "results/post_job_syntax.h"
#include "results/syntax_templates.h"
#include "tests/support/temporary_folder.h"

namespace genostat {
namespace {

TEST(CsvCounts, FollowTheRulesForLinesAndFields) {
  struct Row {
    std::string content;
    std::int32_t samples;
    std::int32_t variables;
  };
  const Row rows[] = {
      {"", 0, 0},
      {"a,b,c", 0, 3},
      {"a,b,\n", 0, 2},
      {"a,,b\n1\n", 1, 3},
      {"\n1\n", 1, 0},
      {"\"x,y\",z\n1,2\n", 1, 3},
      {"a\r\n1\r\n\r\n2\r\n", 2, 1},
      {"a,\r\n1\n", 1, 1},        // the CR is not a field
      {"a\n1\n\n\n2\n\n", 2, 1},  // empty lines do not count
      {"a\n   \n\t\n", 2, 1},     // lines of blanks do
      {"a\n\r\r\n", 1, 1},        // one CR belongs to the line end, one to the line
      {"a\n\r", 1, 1},            // no line end at all
      {"a\n1", 1, 1},
      {"a\n1\x1a\n2\n", 2, 1},
      {"a," + std::string(70'000, 'x') + "\r\n1\n\r\n2\n", 2, 2},
  };
  const test::TemporaryFolder folder;
  const std::string path = folder.narrow("counts.csv");
  for (const Row& row : rows) {
    std::ofstream(path, std::ios::binary) << row.content;
    const auto counts = countCsv(path.c_str());
    ASSERT_TRUE(counts.has_value());
    EXPECT_EQ(counts->samples, row.samples) << testing::PrintToString(row.content);
    EXPECT_EQ(counts->variables, row.variables) << testing::PrintToString(row.content);
  }
  EXPECT_FALSE(countCsv(folder.narrow("missing.csv").c_str()).has_value());
  EXPECT_FALSE(countCsv(folder.narrow().c_str()).has_value()) << "a folder";
}

TEST(FillTemplate, SubstitutesOnceAndDropsBlankLines) {
  struct Row {
    std::string text;
    std::string expected;
  };
  const Row rows[] = {
      {"{{A}}{{A}}-{{B}}", "11-{{A}}"},                      // values are not scanned again
      {"x {{C}} {{A B}} {{}} y", "x {{C}} {{A B}} {{}} y"},  // unknown and malformed names stay
      {"  {{E}}\n \t\r\nkeep {{E}}\n  in\n", "keep \n  in"},
      {"{{A}} one {{tail", "1 one {{tail one {{tail"},  // the open rest is doubled
      {"{{A}}}}", "1}}"},
      {"{{{A}}}", "{{{A}}}"},
      {"{{azAZ09_}} {{@}}", "2 {{@}}"},  // what names are made of
      {"", ""},
  };
  const ValueMap values = {{"A", "1"}, {"B", "{{A}}"}, {"E", ""}, {"azAZ09_", "2"}, {"@", "3"}};
  for (const Row& row : rows) {
    EXPECT_EQ(fillTemplate({{"T", row.text}}, "T", values), row.expected) << row.text;
  }
  EXPECT_EQ(fillTemplate(buildTemplateTable(), "NO_SUCH", {}), "");
}

TEST(FixedText, MatchesTheCFormatInEveryMagnitude) {
  EXPECT_EQ(fixedText(95, 6), "95.000000");
  EXPECT_EQ(fixedText(90.5, 6), "90.500000");
  EXPECT_EQ(fixedText(-0.005, 2), "-0.01");  // the double lies beyond the half
  EXPECT_EQ(fixedText(1e308, 6).size(), 316u);
}

TEST(PostJobSyntax, ImportsTheColumnsOfTheResult) {
  std::string columns;
  for (const common::ResultColumn& column : common::kResultColumns) {
    columns.append("                ").append(column.name).append(" AUTO\n");
  }
  const std::string syntax = postJobSyntax(GenoJobSettings(), false);
  EXPECT_NE(syntax.find("/VARIABLES=\n" + columns + "                /MAP."), std::string::npos) << syntax;
}

}  // namespace
}  // namespace genostat
