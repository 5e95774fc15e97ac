// Counts of result files, the template filler, and the generated syntax to the byte.
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
      {"", ""},
  };
  const ValueMap values = {{"A", "1"}, {"B", "{{A}}"}, {"E", ""}};
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

const std::string kPrint = R"(GENOSTAT
                                        /JOB FILE='' NAME='my_run_1' ADAPTERS=NONE
                                        /PRINT SAMPLE_COUNT=2 VARIABLE_COUNT=25 MESSAGE=100.
)";

std::string importedColumns() {
  std::string lines;
  for (const common::ResultColumn& column : common::kResultColumns) {
    lines.append("                ").append(column.name).append(" AUTO\n");
  }
  return lines;
}

const std::string kImport = R"(                PRESERVE.
                SET DECIMAL DOT.
                GET DATA  /TYPE=TXT
                /FILE="/tmp/1.csv"
                /ENCODING='UTF8'
                /DELIMITERS=","
                /QUALIFIER='"'
                /ARRANGEMENT=DELIMITED
                /FIRSTCASE=2
                /DATATYPEMIN PERCENTAGE=95.0
                /VARIABLES=
)" + importedColumns() + R"(                /MAP.
                RESTORE.
                CACHE.
                EXECUTE.
                DATASET NAME my_run_1.
                DATASET ACTIVATE my_run_1.)";

const std::string kDelete = R"(
GENOSTAT
                                        /JOB FILE='' NAME='my_run_1' ADAPTERS=NONE
                                        /DELETE FILE='/tmp/1.csv'.)";

void fillRecord(GenoJobSettings& settings) {
  settings.setJobName("my run 1");
  settings.setCsvFilePath("/tmp/1.csv");
  settings.setSampleCount(2);
  settings.setVariableCount(25);
  settings.setMessageCode(100);
}

TEST(PostJobSyntax, IsExactForEachAnalysis) {
  struct Row {
    const char* what;
    std::function<void(GenoJobSettings&)> ask;
    std::string block;
  };
  const std::string pad44(44, ' ');
  const std::string pad52(52, ' ');
  const std::string pad36(36, ' ');
  const Row rows[] = {
      {"none", [](GenoJobSettings&) {}, ""},
      {"descriptives without variables", [](GenoJobSettings& s) { s.descriptives(true); },
       "\nDESCRIPTIVES VARIABLES= \n" + std::string(20, ' ') + "/STATISTICS=MEAN STDDEV MIN MAX  ."},
      {"all of frequencies",
       [](GenoJobSettings& s) {
         *s.frequencies(true) = FrequenciesOptions{{"GC", "qc_score"}, 10, {5, 95.5}, true, true};
       },
       "\nFREQUENCIES VARIABLES=GC qc_score\n/NTILES=4\n/NTILES=10\n" + pad44 + "/PERCENTILES=5.00 95.50\n" +
           pad44 + "/STATISTICS=STDDEV VARIANCE RANGE MINIMUM MAXIMUM SEMEAN CV\n/HISTOGRAM NORMAL\n" +
           pad44 + "/ORDER=ANALYSIS."},
      {"bare frequencies", [](GenoJobSettings& s) { s.frequencies(true)->variables = {"GC"}; },
       "\nFREQUENCIES VARIABLES=GC\n" + pad44 +
           "/STATISTICS=STDDEV VARIANCE RANGE MINIMUM MAXIMUM SEMEAN CV\n" + pad44 + "/ORDER=ANALYSIS."},
      {"Spearman alone",
       [](GenoJobSettings& s) {
         *s.correlations(true) = CorrelationsOptions{{"a", "b"}, false, true, false, true, false};
       },
       "\n\nNONPAR CORR\n" + pad52 + "/VARIABLES=a b\n" + pad52 + "/PRINT=SPEARMAN  TWOTAIL NOSIG FULL\n" +
           pad52 + "/MISSING=PAIRWISE."},
      {"Pearson, Spearman and Kendall",
       [](GenoJobSettings& s) {
         *s.correlations(true) = CorrelationsOptions{{"a", "b"}, true, true, true, false, true};
       },
       "\nCORRELATIONS\n" + pad44 + "/VARIABLES=a b\n" + pad44 + "/PRINT=ONETAIL  NOSIG FULL\n" + pad44 +
           "/STATISTICS XPROD\n" + pad44 + "/MISSING=PAIRWISE.\nNONPAR CORR\n" + pad52 + "/VARIABLES=a b\n" +
           pad52 + "/PRINT=BOTH ONETAIL  NOSIG FULL\n" + pad52 + "/MISSING=PAIRWISE."},
      {"no coefficient at all", [](GenoJobSettings& s) { s.correlations(true)->pearson = false; }, "\n"},
      {"regression",
       [](GenoJobSettings& s) {
         *s.regression(true) =
             RegressionOptions{"GC", {"a", "b"}, RegressionMethod::FORWARD, "95.000000", false, true};
       },
       "\nREGRESSION\n" + pad36 + "/MISSING LISTWISE\n" + pad36 +
           "/STATISTICS COEFF OUTS CI(95.000000) R ANOVA COLLIN TOL CHANGE\n" + pad36 +
           "/CRITERIA=PIN(.05) POUT(.10) TOLERANCE(.0001)\n" + pad36 + "/NOORIGIN\n" + pad36 +
           "/DEPENDENT GC\n" + pad36 + "/METHOD=FORWARD a b\n" + pad36 +
           "/RESIDUALS PRESS NORMPROB(ZRESID)."},
  };
  for (const Row& row : rows) {
    GenoJobSettings settings;
    fillRecord(settings);
    row.ask(settings);
    EXPECT_EQ(postJobSyntax(settings, false), kPrint + kImport + row.block + kDelete) << row.what;
    EXPECT_EQ(postJobSyntax(settings, true), kPrint) << row.what;
  }
}

}  // namespace
}  // namespace genostat
