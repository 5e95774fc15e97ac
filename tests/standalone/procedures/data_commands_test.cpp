// Commands as a user types them: what they show, warn and refuse.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/standalone/procedures/command_fixture.h"

namespace genostat::standalone {
namespace {

TEST_F(Commands, ImportAsAJobAsksForIt) {
  const std::string file = write("r\xC3\xA9sultat.csv", "Sample,GC\n\"a,1\",48.25\nb,\n");
  const std::string head = R"(                PRESERVE.
                SET DECIMAL DOT.
                GET DATA  /TYPE=TXT
                /FILE=")";
  const std::string tail = R"("
                /ENCODING='UTF8'
                /DELIMITERS=","
                /QUALIFIER='"'
                /ARRANGEMENT=DELIMITED
                /FIRSTCASE=2
                /DATATYPEMIN PERCENTAGE=95.0
                /VARIABLES=
                Sample AUTO
                GC AUTO
                /MAP.
                RESTORE.
                CACHE.
                EXECUTE.
                DATASET NAME run-1.
                DATASET ACTIVATE run-1.
)";
  EXPECT_EQ(run(head + file + tail), R"(
Imported Data
+--------+---------+--------+--------+
|        | Type    | Case 1 | Case 2 |
+--------+---------+--------+--------+
| Sample | String  | a,1    | b      |
| GC     | Numeric |  48.25 |        |
+--------+---------+--------+--------+
2 cases, 2 variables, from )" + file + "\n");
  EXPECT_EQ(activeName(), "run-1");
  // A job's own syntax has the path in the system's narrow encoding.
  datasets_.closeAll();
  run(head + folder_.narrow() + "/" + platform::pathToNarrow(platform::pathFromUtf8("r\xC3\xA9sultat.csv")) +
      tail);
  ASSERT_NE(datasets_.active(), nullptr);
  EXPECT_EQ(datasets_.active()->caseCount, 2U);
}

TEST_F(Commands, ShowTheVerdictsOfAJob) {
  // [sample][check] of the chart, or nothing when there is none.
  const auto overview = [&](const std::string& variables, const std::string& csv) {
    items_.clear();
    run("GET DATA /TYPE=TXT /FILE='" + write("v.csv", csv) + "' /VARIABLES=" + variables + " /MAP.");
    const std::string& chart = items_.back();
    const std::size_t samples = chart.find("\"samples\":");
    return samples == std::string::npos ? "" : chart.substr(samples, chart.rfind("]]") + 2 - samples);
  };
  EXPECT_EQ(
      overview("id AUTO Sample AUTO per_base_n_content AUTO n AUTO gc AUTO",
               "x,b,pass,1,\nx,a,PASS,1,warn\nx,,fail,2,Warn\nx,a,warn,,pass\nx,,pass,3,fail\n"),
      R"json("samples":["Case 3","Case 5","a","a (2)","b"],"checks":["Per base N content","gc"],)json"
      R"json("verdicts":[["fail","warn"],["pass","fail"],["pass","warn"],["warn","pass"],["pass",null]])json");
  EXPECT_EQ(overview("p AUTO q AUTO name AUTO", "pass,fail,\"s,1\"\n"),
            R"("samples":["s,1"],"checks":["p","q"],"verdicts":[["pass","fail"]])");
  EXPECT_EQ(overview("p AUTO q AUTO", "pass,passed\n"), "") << "one check is none";
  std::string many;
  for (int i = 1; i <= 501; ++i) {
    many += std::to_string(i) + (i == 500 ? ",fail,pass\n" : ",pass,pass\n");
  }
  EXPECT_EQ(overview("s A9 p AUTO q AUTO", many).substr(0, 22), R"("samples":["500","1",")");
  EXPECT_NE(items_.back().find("The 500 worst of 501 samples are shown."), std::string::npos);
}

TEST_F(Commands, RefuseWhatIsWrongInAnImport) {
  struct Row {
    std::string command, expected;
  };
  const std::vector<Row> rows = {
      {"/TYPE=TXT /FILE='none.csv' /VARIABLES=a AUTO",
       "error at ['none.csv']: cannot import \"none.csv\": it cannot be opened: No such file or directory\n"},
      {"/TYPE=ODBC", "error at [ODBC]: unknown type of file \"ODBC\" (expected TXT)\n"},
      {"/TYPE=TXT /FILE='x'", "error at [GET]: GET DATA needs /VARIABLES\n"},
      {"/TYPE=TXT /FILE='x' /FILE='y'", "error at [FILE]: /FILE is given twice\n"},
      {"/ENCODING='LATIN1'",
       "error at ['LATIN1']: the encoding \"LATIN1\" is not supported (expected 'UTF8')\n"},
      {"/DELIMITERS=''", "error at ['']: the delimiters are empty\n"},
      {"/QUALIFIER='xy'", "error at ['xy']: the qualifier is one ASCII character, or empty for none\n"},
      {"/FIRSTCASE=0", "error at [0]: the lines of a file are counted from 1\n"},
      {"/DATATYPEMIN PERCENTAGE=101", "error at [101]: a percentage lies between 0 and 100\n"},
      {"/VARIABLES=a AUTO A f8", "error at [A]: the variable \"A\" is named twice\n"},
      {"/VARIABLES=a F8.x",
       "error at [F8.x]: unknown type \"F8.x\" of a (expected AUTO, a number format such as F8.2, or a text "
       "format "
       "such as A20)\n"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(run("GET DATA " + row.command + "."), row.expected);
  }
}

// The analyses written for a failed import must not describe another dataset.
TEST_F(Commands, LeaveNoDatasetActiveAfterAFailedImport) {
  const std::string file = write("a.csv", "1\n2\n");
  const std::string import = "GET DATA /TYPE=TXT /FILE='" + file + "' /VARIABLES=a AUTO.\n";
  run(import + "DATASET NAME first.\n");
  EXPECT_EQ(run("GET DATA /TYPE=TXT /FILE='none' /VARIABLES=a AUTO.\nCACHE.\nDATASET NAME "
                "second.\nDESCRIPTIVES a.\n"),
            "error at ['none']: cannot import \"none\": it cannot be opened: No such file or directory\n"
            "error at [CACHE]: no dataset is active\n"
            "error at [second]: no dataset is active that could be named \"second\"\n"
            "error at [DESCRIPTIVES]: no dataset is active\n");
  EXPECT_EQ(run("DATASET ACTIVATE FIRST.\nDATASET ACTIVATE .\n"), "");
  EXPECT_EQ(activeName(), "first");
  run(import);
  EXPECT_EQ(run("DATASET NAME .\n"),
            "warning at [.]: DATASET NAME gives no name; the dataset stays without one\n");
  EXPECT_EQ(
      run("DATASET ACTIVATE .\nDATASET NAME 'my run'.\nDATASET CLOSE frist.\nDATASET CLOSE my run.\n"),
      "error at [frist]: no open dataset is named \"frist\" (expected first or my run; did you mean first?)\n"
      "error at [run]: expected the end of the command, found \"run\"\n");
  EXPECT_EQ(run("DATASET CLOSE *.\nDATASET CLOSE *.\nDATASET CLOSE ALL.\n"),
            "error at [*]: no dataset is active\n");
  EXPECT_TRUE(datasets_.all().empty());
}

TEST_F(Commands, KeepSettingsOnAStack) {
  const std::string file = write("a.csv", "1,5;x\n");
  EXPECT_EQ(run("PRESERVE.\nSET DECIMAL=COMMA.\nPRESERVE.\nSET DEC DOT.\nRESTORE.\n"
                "GET DATA /TYPE=TXT /FILE='" +
                file +
                "' /DELIMITERS=';' /VARIABLES=a F8.1 b A5.\n"
                "RESTORE.\nRESTORE.\nSET DECIMAL SLASH.\n"),
            R"(
Imported Data
+---+---------+--------+
|   | Type    | Case 1 |
+---+---------+--------+
| a | Numeric |    1.5 |
| b | String  | x      |
+---+---------+--------+
1 case, 2 variables, from )" +
                file + R"(
error at [RESTORE]: RESTORE has no PRESERVE before it
error at [SLASH]: unknown keyword "SLASH" (expected DOT or COMMA)
)");
  EXPECT_EQ(settings_.decimal, '.');
}

TEST_F(Commands, DescribeVariables) {
  const std::string file = write("a.csv", "s1,1,2.5,,3\ns2,2,3.0,,3\ns3,,-1.25,,3\ns4,4,10.0,,3\n");
  run("GET DATA /TYPE=TXT /FILE='" + file + "' /VARIABLES=Sample AUTO n AUTO x AUTO none AUTO same AUTO.");
  EXPECT_EQ(run("DESCRIPTIVES VARIABLES=Sample n TO same N \n"
                "                    /STATISTICS=MEAN STDDEV MIN MAX SKEWNESS KURTOSIS."),
            R"(warning at [Sample]: a string variable is left out: Sample

Descriptive Statistics
+--------------------+---+---------+---------+--------+----------------+------------------------+------------------------+
|                    |   |         |         |        |                |        Skewness        |        Kurtosis        |
|                    |   |         |         |        |                +-----------+------------+-----------+------------+
|                    | N | Minimum | Maximum |   Mean | Std. Deviation | Statistic | Std. Error | Statistic | Std. Error |
+--------------------+---+---------+---------+--------+----------------+-----------+------------+-----------+------------+
| n                  | 3 |       1 |       4 |   2.33 |          1.528 |     0.935 |      1.225 |           |            |
| x                  | 4 |   -1.25 |   10.00 | 3.5625 |        4.69208 |     0.994 |      1.014 |     2.009 |      2.619 |
| none               | 0 |         |         |        |                |           |            |           |            |
| same               | 4 |       3 |       3 |   3.00 |          0.000 |           |            |           |            |
| Valid N (listwise) | 0 |         |         |        |                |           |            |           |            |
+--------------------+---+---------+---------+--------+----------------+-----------+------------+-----------+------------+
)");
  EXPECT_EQ(run("DESC n x /MISSING=LISTWISE /STATISTICS RANGE SUM SEMEAN VARIANCE."), R"(
Descriptive Statistics
+--------------------+---+-------+-------+--------------------+----------+
|                    | N | Range |   Sum | Std. Error of Mean | Variance |
+--------------------+---+-------+-------+--------------------+----------+
| n                  | 3 |     3 |     7 |              0.882 |    2.333 |
| x                  | 3 |  7.50 | 15.50 |            2.42097 | 17.58333 |
| Valid N (listwise) | 3 |       |       |                    |          |
+--------------------+---+-------+-------+--------------------+----------+
)");
  struct Row {
    std::string command, expected;
  };
  const std::vector<Row> refused = {
      {"DESCRIPTIVES VARIABLES= /STATISTICS=MEAN.", "error at [/]: the list names no variable\n"},
      {"DESCRIPTIVES.", "error at [DESCRIPTIVES]: DESCRIPTIVES names no variable\n"},
      {"DESCRIPTIVES Sample.", "error at [Sample]: the list names no numeric variable\n"},
      {"DESCRIPTIVES nome.", "error at [nome]: the dataset has no variable \"nome\" (did you mean none?)\n"},
      {"DESCRIPTIVES x, .", "error at [.]: expected the name of a variable, found the end of the command\n"},
      {"DESCRIPTIVES x TO n.", "error at [n]: n comes before x in the dataset\n"},
      {"DESCRIPTIVES n TO.", "error at [.]: expected the name of a variable, found the end of the command\n"},
      {"DESCRIPTIVES n /STATISTICS=MEDIAN.",
       "error at [MEDIAN]: unknown statistic \"MEDIAN\" (expected RANGE, "},
  };
  for (const Row& row : refused) {
    EXPECT_EQ(run(row.command).substr(0, row.expected.size()), row.expected);
  }
}

TEST_F(Commands, TakeAVariableForASubcommandBeforeAnEqualsSignOnly) {
  useData("var,x\n1,2\n3,5\n");
  for (const std::string command : {"DESCRIPTIVES", "FREQUENCIES", "CORRELATIONS", "NONPAR CORR"}) {
    const std::string shown = run(command + " var x.");
    EXPECT_NE(shown.find("| var"), std::string::npos) << shown;
    EXPECT_EQ(run(command + " VAR=var, x."), shown);
  }
}

}  // namespace
}  // namespace genostat::standalone
