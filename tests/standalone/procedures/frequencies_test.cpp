#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/standalone/procedures/command_fixture.h"

namespace genostat::standalone {
namespace {

// x was worked out by hand; its percentiles have the ranks 5p: 0.25, 1.25, 1.67, 2.5, 3.33, 3.75, 4.775.
TEST_F(Commands, ShowFrequenciesAsAJobAsksForThem) {
  useData("Sample,x,none\na,2.5,\nb,3.0,\na,-1.25,\n,10.0,\n");
  EXPECT_EQ(run("FREQUENCIES VARIABLES=Sample x none\n"
                "                                            /NTILES=4\n/NTILES=3\n"
                "                                            /PERCENTILES=5.00 95.50 25.00\n"
                "                 /STATISTICS=STDDEV VARIANCE RANGE MINIMUM MAXIMUM SEMEAN CV\n"
                "                                            /HISTOGRAM NORMAL\n"
                "                                            /ORDER=ANALYSIS."),
            R"(string variables have no statistics and no histogram: Sample

Statistics
+-----------------------+--------+----------+------+
|                       | Sample |        x | none |
+-------------+---------+--------+----------+------+
| N           | Valid   |      3 |        4 |    0 |
|             | Missing |      1 |        0 |    4 |
+-------------+---------+--------+----------+------+
| Std. Error of Mean    |        |  2.34604 |      |
| Std. Deviation        |        |  4.69208 |      |
| Coefficient of        |        |  131.708 |      |
| Variation (%)         |        |          |      |
| Variance              |        | 22.01562 |      |
| Range                 |        |    11.25 |      |
| Minimum               |        |    -1.25 |      |
| Maximum               |        |    10.00 |      |
+-------------+---------+--------+----------+------+
| Percentiles | 5       |        |  -1.2500 |      |
|             | 25      |        |  -0.3125 |      |
|             | 33.3333 |        |   1.2500 |      |
|             | 50      |        |   2.7500 |      |
|             | 66.6667 |        |   5.3333 |      |
|             | 75      |        |   8.2500 |      |
|             | 95.5    |        |  10.0000 |      |
+-------------+---------+--------+----------+------+

Sample
+------------------+-----------+---------+---------------+--------------------+
|                  | Frequency | Percent | Valid Percent | Cumulative Percent |
+---------+--------+-----------+---------+---------------+--------------------+
| Valid   | a      |         2 |    50.0 |          66.7 |               66.7 |
|         | b      |         1 |    25.0 |          33.3 |              100.0 |
|         | Total  |         3 |    75.0 |         100.0 |                    |
+---------+--------+-----------+---------+---------------+--------------------+
| Missing | System |         1 |    25.0 |               |                    |
+---------+--------+-----------+---------+---------------+--------------------+
| Total            |         4 |   100.0 |               |                    |
+------------------+-----------+---------+---------------+--------------------+

x
+---------------+-----------+---------+---------------+--------------------+
|               | Frequency | Percent | Valid Percent | Cumulative Percent |
+-------+-------+-----------+---------+---------------+--------------------+
| Valid | -1.25 |         1 |    25.0 |          25.0 |               25.0 |
|       | 2.50  |         1 |    25.0 |          25.0 |               50.0 |
|       | 3.00  |         1 |    25.0 |          25.0 |               75.0 |
|       | 10.00 |         1 |    25.0 |          25.0 |              100.0 |
|       | Total |         4 |   100.0 |         100.0 |                    |
+-------+-------+-----------+---------+---------------+--------------------+

none
+------------------+-----------+---------+---------------+--------------------+
|                  | Frequency | Percent | Valid Percent | Cumulative Percent |
+---------+--------+-----------+---------+---------------+--------------------+
| Missing | System |         4 |   100.0 |               |                    |
+---------+--------+-----------+---------+---------------+--------------------+
| Total            |         4 |   100.0 |               |                    |
+------------------+-----------+---------+---------------+--------------------+

[chart: Histogram of x; shown in HTML output]
none has no histogram: it has no values
)");
  ASSERT_FALSE(items_.empty());
  EXPECT_NE(items_[items_.size() - 2].find(
                R"("firstEdge":-5.0,"binWidth":5.0,"counts":[1,2,1],"validCount":4,"mean":3.5625,)"),
            std::string::npos);
  EXPECT_NE(items_[items_.size() - 2].find(R"("normalCurve":true)"), std::string::npos);
}

TEST_F(Commands, ShowValuesInTheOrderAskedFor) {
  const std::string file = write("a.csv", "3,b\n3.01,\xC3\xA9\n3.001,Z\n1,b\n10,\n10,b\n");
  run("GET DATA /TYPE=TXT /FILE='" + file + "' /VARIABLES=v F8.1 s A5.");
  EXPECT_EQ(run("FREQ v s /FORMAT=DFREQ /STAT MODE MEDIAN /ORDER=VARIABLE."),
            R"(string variables have no statistics and no histogram: s

Statistics
+-------------+-------+
|             |     v |
+---+---------+-------+
| N | Valid   |     6 |
|   | Missing |     0 |
+---+---------+-------+
| Median      | 3.005 |
| Mode        |  10.0 |
+-------------+-------+

v
+---------------+-----------+---------+---------------+--------------------+
|               | Frequency | Percent | Valid Percent | Cumulative Percent |
+-------+-------+-----------+---------+---------------+--------------------+
| Valid | 10.0  |         2 |    33.3 |          33.3 |               33.3 |
|       | 1.0   |         1 |    16.7 |          16.7 |               50.0 |
|       | 3     |         1 |    16.7 |          16.7 |               66.7 |
|       | 3.001 |         1 |    16.7 |          16.7 |               83.3 |
|       | 3.01  |         1 |    16.7 |          16.7 |              100.0 |
|       | Total |         6 |   100.0 |         100.0 |                    |
+-------+-------+-----------+---------+---------------+--------------------+

Statistics
+-------------+---+
|             | s |
+---+---------+---+
| N | Valid   | 5 |
|   | Missing | 1 |
+---+---------+---+
| Median      |   |
| Mode        |   |
+-------------+---+

s
+------------------+-----------+---------+---------------+--------------------+
|                  | Frequency | Percent | Valid Percent | Cumulative Percent |
+---------+--------+-----------+---------+---------------+--------------------+
| Valid   | b      |         3 |    50.0 |          60.0 |               60.0 |
|         | Z      |         1 |    16.7 |          20.0 |               80.0 |
|         | é      |         1 |    16.7 |          20.0 |              100.0 |
|         | Total  |         5 |    83.3 |         100.0 |                    |
+---------+--------+-----------+---------+---------------+--------------------+
| Missing | System |         1 |    16.7 |               |                    |
+---------+--------+-----------+---------+---------------+--------------------+
| Total            |         6 |   100.0 |               |                    |
+------------------+-----------+---------+---------------+--------------------+
)");
}

TEST_F(Commands, LeaveOutWhatIsTooLongOrDoesNotExist) {
  std::string data = "id,none,one\n0,,0.000123\n";
  for (int i = 1; i <= 500; ++i) {
    data += std::to_string(i) + ",,\n" + std::to_string(-i) + ",,\n";
  }
  useData(data);
  EXPECT_EQ(run("FREQUENCIES id none one /PERCENTILES=0, 0.1, 50 100 /STATISTICS ALL /HISTOGRAM NORMAL."),
            R"(
Statistics
+-----------------------+------------+------+----------+
|                       |         id | none |      one |
+-------------+---------+------------+------+----------+
| N           | Valid   |      1001  |    0 |        1 |
|             | Missing |         0  | 1001 |     1000 |
+-------------+---------+------------+------+----------+
| Mean                  |      0.00  |      | 0.000123 |
| Std. Error of Mean    |     9.138  |      |          |
| Median                |      0.00  |      | 0.000123 |
| Mode                  |      -500a |      | 0.000123 |
| Std. Deviation        |   289.108  |      |          |
| Coefficient of        |            |      |          |
| Variation (%) (b)     |            |      |          |
| Variance              | 83583.500  |      |          |
| Skewness              |     0.000  |      |          |
| Std. Error of         |     0.077  |      |          |
| Skewness              |            |      |          |
| Kurtosis              |    -1.200  |      |          |
| Std. Error of         |     0.154  |      |          |
| Kurtosis              |            |      |          |
| Range                 |      1000  |      |   0.0000 |
| Minimum               |      -500  |      | 0.000123 |
| Maximum               |       500  |      | 0.000123 |
| Sum                   |         0  |      | 0.000123 |
+-------------+---------+------------+------+----------+
| Percentiles | 0       |   -500.00  |      | 0.000123 |
|             | 0.1     |   -500.00  |      | 0.000123 |
|             | 50      |      0.00  |      | 0.000123 |
|             | 100     |    500.00  |      | 0.000123 |
+-------------+---------+------------+------+----------+
a. Multiple modes exist. The smallest value is shown.
b. There is no coefficient of variation where the mean is 0.
id has 1001 distinct values; the table of them is left out (/FORMAT=LIMIT(n) shows up to n, now 1000)

none
+------------------+-----------+---------+---------------+--------------------+
|                  | Frequency | Percent | Valid Percent | Cumulative Percent |
+---------+--------+-----------+---------+---------------+--------------------+
| Missing | System |      1001 |   100.0 |               |                    |
+---------+--------+-----------+---------+---------------+--------------------+
| Total            |      1001 |   100.0 |               |                    |
+------------------+-----------+---------+---------------+--------------------+

one
+--------------------+-----------+---------+---------------+--------------------+
|                    | Frequency | Percent | Valid Percent | Cumulative Percent |
+---------+----------+-----------+---------+---------------+--------------------+
| Valid   | 0.000123 |         1 |     0.1 |         100.0 |              100.0 |
|         | Total    |         1 |     0.1 |         100.0 |                    |
+---------+----------+-----------+---------+---------------+--------------------+
| Missing | System   |      1000 |    99.9 |               |                    |
+---------+----------+-----------+---------+---------------+--------------------+
| Total              |      1001 |   100.0 |               |                    |
+--------------------+-----------+---------+---------------+--------------------+

[chart: Histogram of id; shown in HTML output]
none has no histogram: it has no values

[chart: Histogram of one; shown in HTML output]
)");
  EXPECT_NE(run("FREQUENCIES id /FORMAT=LIMIT(1001).").find("|       | 500   |         1 |     0.1 |"),
            std::string::npos);
  EXPECT_EQ(run("FREQUENCIES none one /FORMAT=LIMIT(5) NOTABLE."), R"(
Statistics
+-------------+------+------+
|             | none |  one |
+---+---------+------+------+
| N | Valid   |    0 |    1 |
|   | Missing | 1001 | 1000 |
+---+---------+------+------+
)");
}

TEST_F(Commands, RefuseWhatIsWrongInFrequencies) {
  useData("a,b\n1,x\n");
  struct Row {
    std::string command, expected;
  };
  const std::vector<Row> rows = {
      {".", "error at [FREQUENCIES]: FREQUENCIES names no variable\n"},
      {" a /VARIABLES=b.", "error at [b]: the variables are listed twice\n"},
      {" c.", "error at [c]: the dataset has no variable \"c\"\n"},
      {" a /NTILES=1.", "error at [1]: NTILES takes a number from 2 to 1000\n"},
      {" a /NTILES=2147483647.", "error at [2147483647]: NTILES takes a number from 2 to 1000\n"},
      {" a /NTILES=2.5.", "error at [2.5]: expected a whole number for NTILES, found the number 2.5\n"},
      {" a /NTILES=.", "error at [.]: expected a whole number for NTILES, found the end of the command\n"},
      {" a /PERCENTILES=25 100.01.", "error at [100.01]: a percentile lies between 0 and 100\n"},
      {" a /PERCENTILES=-1.", "error at [-1]: a percentile lies between 0 and 100\n"},
      {" a /PERCENTILES= /NTILES=4.", "error at [/]: expected a percentile, found \"/\"\n"},
      {" a /STATISTICS=MEN.", "error at [MEN]: unknown statistic \"MEN\" (expected MEAN, "},
      {" a /FORMAT=LIMIT(0).", "error at [0]: LIMIT takes a number from 1 to 100000\n"},
      {" a /FORMAT=LIMIT 5.", "error at [5]: expected \"(\", found the number 5\n"},
      {" a /HISTOGRAM=CURVE.", "error at [CURVE]: unknown keyword \"CURVE\" (expected NONORMAL or NORMAL)\n"},
      {" a /ORDER=SIZE.", "error at [SIZE]: unknown keyword \"SIZE\" (expected ANALYSIS or VARIABLE)\n"},
      {" a /BARCHART.", "error at [BARCHART]: unknown subcommand \"BARCHART\" (expected VARIABLES, "},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(run("FREQUENCIES" + row.command).substr(0, row.expected.size()), row.expected);
  }
}

}  // namespace
}  // namespace genostat::standalone
