// CORRELATIONS and NONPAR CORR as a user types them. Numbers are checked in the room of statistics.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/standalone/procedures/command_fixture.h"

namespace genostat::standalone {
namespace {

constexpr const char* kData =
    "up,down,same,text,few\n"
    "1,9.7,7,x,\n2,8.1,7,x,2\n3,8.2,7,x,\n4,6.6,,x,1\n5,5.9,7,x,\n6,6.1,7,x,\n7,4,7,x,\n";

TEST_F(Commands, CorrelateAsAJobAsksForIt) {
  useData(kData);
  EXPECT_EQ(run(R"(                        CORRELATIONS
                                            /VARIABLES=up down same few
                                            /PRINT=ONETAIL TWOTAIL NOSIG FULL
                                            /STATISTICS XPROD
                                            /MISSING=PAIRWISE.)"),
            R"(
Correlations
+------------------------------------------+-----------+-----------+-------+--------+
|                                          | up        | down      | same  | few    |
+------+-----------------------------------+-----------+-----------+-------+--------+
| up   | Pearson Correlation               |       1   |   -.963** | a     | -1.000 |
|      | Sig. (2-tailed)                   |           |    .001   |       | b      |
|      | Sig. (1-tailed)                   |           |    .000   |       | b      |
|      | Sum of Squares and Cross-products |  28.000   | -23.400   | 0.000 | -1.000 |
|      | Covariance                        |   4.667   |  -3.900   | 0.000 | -1.000 |
|      | N                                 |       7   |       7   |     6 |      2 |
+------+-----------------------------------+-----------+-----------+-------+--------+
| down | Pearson Correlation               |   -.963** |       1   | a     |  1.000 |
|      | Sig. (2-tailed)                   |    .001   |           |       | b      |
|      | Sig. (1-tailed)                   |    .000   |           |       | b      |
|      | Sum of Squares and Cross-products | -23.400   |  21.097   | 0.000 |  0.750 |
|      | Covariance                        |  -3.900   |   3.516   | 0.000 |  0.750 |
|      | N                                 |       7   |       7   |     6 |      2 |
+------+-----------------------------------+-----------+-----------+-------+--------+
| same | Pearson Correlation               | a         | a         | a     | c      |
|      | Sig. (2-tailed)                   |           |           |       |        |
|      | Sig. (1-tailed)                   |           |           |       |        |
|      | Sum of Squares and Cross-products |   0.000   |   0.000   | 0.000 |        |
|      | Covariance                        |   0.000   |   0.000   | 0.000 |        |
|      | N                                 |       6   |       6   |     6 |      1 |
+------+-----------------------------------+-----------+-----------+-------+--------+
| few  | Pearson Correlation               |  -1.000   |   1.000   | c     |      1 |
|      | Sig. (2-tailed)                   | b         | b         |       |        |
|      | Sig. (1-tailed)                   | b         | b         |       |        |
|      | Sum of Squares and Cross-products |  -1.000   |   0.750   |       |  0.500 |
|      | Covariance                        |  -1.000   |   0.750   |       |  0.500 |
|      | N                                 |       2   |       2   |     1 |      2 |
+------+-----------------------------------+-----------+-----------+-------+--------+
**. Correlation is significant at the 0.01 level (2-tailed).
a. Cannot be computed because at least one of the variables is constant.
b. Cannot be computed because two cases leave no degrees of freedom.
c. Cannot be computed because fewer than two cases are valid.

[chart: Scatter-plot matrix; shown in HTML output]
)");
  EXPECT_EQ(
      run("NONPAR CORR\n /VARIABLES=up down text few\n /PRINT=BOTH ONETAIL  NOSIG FULL\n /MISSING=PAIRWISE."),
      R"(warning at [text]: a string variable is left out: text

Nonparametric Correlations
+--------------------------------------------------+----------+---------+--------+
|                                                  | up       | down    | few    |
+-----------------+------+-------------------------+----------+---------+--------+
| Kendall's tau_b | up   | Correlation Coefficient |  1.000   | -.810** | -1.000 |
|                 |      | Sig. (1-tailed)         |          |  .005   |   .159 |
|                 |      | N                       |      7   |     7   |      2 |
|                 | down | Correlation Coefficient |  -.810** | 1.000   |  1.000 |
|                 |      | Sig. (1-tailed)         |   .005   |         |   .159 |
|                 |      | N                       |      7   |     7   |      2 |
|                 | few  | Correlation Coefficient | -1.000   | 1.000   |  1.000 |
|                 |      | Sig. (1-tailed)         |   .159   |  .159   |        |
|                 |      | N                       |      2   |     2   |      2 |
+-----------------+------+-------------------------+----------+---------+--------+
| Spearman's rho  | up   | Correlation Coefficient |  1.000   | -.929** | -1.000 |
|                 |      | Sig. (1-tailed)         |          |  .001   | a      |
|                 |      | N                       |      7   |     7   |      2 |
|                 | down | Correlation Coefficient |  -.929** | 1.000   |  1.000 |
|                 |      | Sig. (1-tailed)         |   .001   |         | a      |
|                 |      | N                       |      7   |     7   |      2 |
|                 | few  | Correlation Coefficient | -1.000   | 1.000   |  1.000 |
|                 |      | Sig. (1-tailed)         | a        | a       |        |
|                 |      | N                       |      2   |     2   |      2 |
+-----------------+------+-------------------------+----------+---------+--------+
**. Correlation is significant at the 0.01 level (1-tailed).
a. Cannot be computed because two cases leave no degrees of freedom.
)");
}

TEST_F(Commands, CorrelateInOtherShapes) {
  useData(kData);
  struct Row {
    std::string command, expected;
  };
  const std::vector<Row> rows = {
      {"CORRELATIONS up WITH down up /MISSING=LISTWISE /STATISTICS=ALL.", R"(
Descriptive Statistics
+------+-------+----------------+---+
|      |  Mean | Std. Deviation | N |
+------+-------+----------------+---+
| up   |  4.00 |          2.160 | 7 |
| down | 6.943 |         1.8752 | 7 |
+------+-------+----------------+---+

Correlations
+----------------------------------------+---------+--------+
|                                        |    down |     up |
+----+-----------------------------------+---------+--------+
| up | Pearson Correlation               |   -.963 |      1 |
|    | Sig. (2-tailed)                   |    .001 |        |
|    | Sum of Squares and Cross-products | -23.400 | 28.000 |
|    | Covariance                        |  -3.900 |  4.667 |
+----+-----------------------------------+---------+--------+
Listwise N = 7

[chart: Scatter-plot matrix; shown in HTML output]
)"},
      {"CORR up few down /PRINT=LOWER ONETAIL /MISSING=LISTWISE /VARIABLES=down.", R"(
Correlations
+----------------------------+--------+-------+------+
|                            | up     | few   | down |
+------+---------------------+--------+-------+------+
| up   | Pearson Correlation |      1 |       |      |
|      | Sig. (1-tailed)     |        |       |      |
+------+---------------------+--------+-------+------+
| few  | Pearson Correlation | -1.000 |     1 |      |
|      | Sig. (1-tailed)     | a      |       |      |
+------+---------------------+--------+-------+------+
| down | Pearson Correlation | -1.000 | 1.000 |    1 |
|      | Sig. (1-tailed)     | a      | a     |      |
+------+---------------------+--------+-------+------+
Listwise N = 2
a. Cannot be computed because two cases leave no degrees of freedom.

[chart: Scatter-plot matrix; shown in HTML output]

Correlations
+----------------------------+------+
|                            | down |
+------+---------------------+------+
| down | Pearson Correlation |    1 |
|      | Sig. (1-tailed)     |      |
+------+---------------------+------+
Listwise N = 7
)"},
      {"NONPAR CORR down WITH up.", R"(
Nonparametric Correlations
+-------------------------------------------------+-------+
|                                                 |    up |
+----------------+------+-------------------------+-------+
| Spearman's rho | down | Correlation Coefficient | -.929 |
|                |      | Sig. (2-tailed)         |  .003 |
|                |      | N                       |     7 |
+----------------+------+-------------------------+-------+
)"},
      {"CORRELATIONS.", "error at [CORRELATIONS]: CORRELATIONS names no variable\n"},
      {"CORRELATIONS up WITH.", "error at [.]: the list names no variable\n"},
      {"CORRELATIONS WITH up.", "error at [WITH]: the list names no variable\n"},
      {"CORRELATIONS text.", "error at [text]: the list names no numeric variable\n"},
      {"CORRELATIONS up /PRINT=KENDALL.",
       "error at [KENDALL]: unknown keyword \"KENDALL\" (expected ONETAIL, TWOTAIL, SIG, NOSIG, FULL or "
       "LOWER)\n"},
      {"NONPAR CORR.", "error at [NONPAR]: NONPAR CORR names no variable\n"},
      {"NONPAR CORR up /STATISTICS=XPROD.",
       "error at [STATISTICS]: unknown subcommand \"STATISTICS\" (expected VARIABLES, PRINT or MISSING)\n"},
      {"NONPAR CORR up down /MISSING=SOME.",
       "error at [SOME]: unknown keyword \"SOME\" (expected PAIRWISE, LISTWISE, INCLUDE or EXCLUDE)\n"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(run(row.command), row.expected) << row.command;
  }
}

TEST_F(Commands, ScatterPlotsSayWhatTheyLeaveOut) {
  std::string names, syntax;
  for (int i = 1; i <= 9; ++i) {
    names += (i > 1 ? ",v" : "v") + std::to_string(i);
  }
  std::string csv = names + "\n";
  for (int i = 0; i < 2002; ++i) {
    // No point in the last two cases: one value is not enough for one.
    csv += std::to_string(i) + (i < 2000 ? "," + std::to_string(i % 7) : ",") + ",1,1,1,1,1,1,1\n";
  }
  useData(csv);
  run("CORRELATIONS v1 TO v9.");
  ASSERT_EQ(items_.size(), 2U);
  for (const char* part : {R"("kind":"scatterMatrix")", R"("The first 8 of 9 variables are drawn.")",
                           R"("1000 of 2002 cases are drawn, chosen evenly.")", "998.0,1001.0,1003.0"}) {
    EXPECT_NE(items_[1].find(part), std::string::npos) << part << "\n" << items_[1].substr(0, 400);
  }
  run("CORRELATIONS v1 v2 /MISSING=LISTWISE.");
  EXPECT_NE(items_[3].find("1000 of 2000 cases"), std::string::npos);
}

}  // namespace
}  // namespace genostat::standalone
