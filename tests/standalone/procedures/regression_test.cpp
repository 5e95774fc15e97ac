#include <string>
#include <vector>

#include "standalone/output/number_format.h"
#include "standalone/output/table_json.h"
#include "tests/standalone/procedures/command_fixture.h"

namespace genostat::standalone {
namespace {

using RegressionCommand = Commands;

std::string leafLabels(const std::vector<Category>& categories, const std::string& head,
                       std::vector<std::string>& labels) {
  for (const Category& category : categories) {
    const std::string label = head + category.label + (category.mark.empty() ? "" : "^" + category.mark);
    if (category.children.empty()) labels.push_back(label);
    leafLabels(category.children, label + "/", labels);
  }
  std::string joined;
  for (const std::string& label : labels) {
    joined += (joined.empty() ? "" : " | ") + label;
  }
  return joined;
}

// What a table says, without its drawing.
std::string contentsOf(const std::string& itemJson) {
  const rapidjson::Document item = parseJson(itemJson);
  if (stringMember(item, "type") != "table") return {};
  const PivotTable table = readTable(item);
  std::vector<std::string> columns, rows;
  std::string text = "== " + table.title + "^" + table.titleMark + "\n";
  text += leafLabels(table.columns, "", columns) + "\n";
  leafLabels(table.rows, "", rows);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    text += rows[i] + ":";
    for (const CellValue& cell : table.cells[i]) {
      const auto* number = std::get_if<double>(&cell.value);
      const auto* words = std::get_if<std::string>(&cell.value);
      text += number != nullptr  ? " " + formatNumber(*number, cell.format)
              : words != nullptr ? " " + *words
                                 : " -";
      if (!cell.mark.empty()) text += "^" + cell.mark;
    }
    text += "\n";
  }
  for (const std::string& footnote : table.footnotes) {
    text += footnote + "\n";
  }
  return text;
}

// The heat of hardening cement by its ingredients, as in the tests of the numbers.
const std::string kCementCsv =
    "name,x1,x2,x3,x4,y,same\na,7,26,6,60,78.5,5\nb,1,29,15,52,74.3,5\nc,11,56,8,20,104.3,5\n"
    "d,11,31,8,47,87.6,5\ne,7,52,6,33,95.9,5\nf,11,55,9,22,109.2,5\ng,3,71,17,6,102.7,5\n"
    "h,1,31,22,44,72.5,5\ni,2,54,18,22,93.1,5\nj,21,47,4,26,115.9,5\nk,1,40,23,34,83.8,5\n"
    "l,11,66,9,12,113.3,5\nm,10,68,8,12,109.4,5\nn,,68,8,12,109.4,5\n";

TEST_F(RegressionCommand, AsAJobAsksForIt) {
  useData(kCementCsv);
  run(R"(REGRESSION
                                    /MISSING LISTWISE
                                    /STATISTICS COEFF OUTS CI(90.500000) R ANOVA COLLIN TOL CHANGE
                                    /CRITERIA=PIN(.05) POUT(.10) TOLERANCE(.0001)
                                    /NOORIGIN
                                    /DEPENDENT y
                                    /METHOD=STEPWISE name x1 x2 x4 same
                                    /RESIDUALS PRESS NORMPROB(ZRESID).
)");
  std::string contents;
  for (const std::string& item : items_) {
    contents += contentsOf(item);
  }
  EXPECT_EQ(contents, R"(== Variables Entered/Removed^a,c
Variables Entered | Variables Removed | Method
1^b: x4 - Stepwise (enters with p <= .05, is removed with p >= .10)
2: x1 - Stepwise (enters with p <= .05, is removed with p >= .10)
a. Dependent variable: y
b. Not entered: same (constant)
c. 13 of 14 cases; the others have a missing value in one of the variables
== Model Summary^
R | R Square | Adjusted R Square | Std. Error of the Estimate | Change Statistics/R Square Change | Change Statistics/F Change | Change Statistics/df1 | Change Statistics/df2 | Change Statistics/Sig. F Change
1: .821^a .675 .645 8.964 .675 22.799 1 11 .001
2: .986^b .972 .967 2.734 .298 108.224 1 10 .000
a. Predictors: (Constant), x4
b. Predictors: (Constant), x4, x1
== ANOVA^a
Sum of Squares | df | Mean Square | F | Sig.
1^b/Regression: 1831.896 1 1831.896 22.799 .001
1^b/Residual: 883.867 11 80.352 - -
1^b/Total: 2715.763 12 - - -
2^c/Regression: 2641.001 2 1320.500 176.627 .000
2^c/Residual: 74.762 10 7.476 - -
2^c/Total: 2715.763 12 - - -
a. Dependent variable: y
b. Predictors: (Constant), x4
c. Predictors: (Constant), x4, x1
== Coefficients^a
Unstandardized Coefficients/B | Unstandardized Coefficients/Std. Error | Standardized Coefficients/Beta | t | Sig. | 90.5% Confidence Interval for B/Lower Bound | 90.5% Confidence Interval for B/Upper Bound | Collinearity Statistics/Tolerance | Collinearity Statistics/VIF
1/(Constant): 117.568 5.262 - 22.342 .000 107.956 127.180 - -
1/x4: -0.738 0.155 -.821 -4.775 .001 -1.021 -0.456 1.000 1.000
2/(Constant): 103.097 2.124 - 48.540 .000 99.181 107.014 - -
2/x4: -0.614 0.049 -.683 -12.621 .000 -0.704 -0.524 .940 1.064
2/x1: 1.440 0.138 .563 10.403 .000 1.185 1.695 .940 1.064
a. Dependent variable: y
== Excluded Variables^a
Beta In | t | Sig. | Partial Correlation | Collinearity Statistics/Tolerance | Collinearity Statistics/VIF | Collinearity Statistics/Minimum Tolerance
1^b/x1: .563 10.403 .000 .957 .940 1.064 .940
1^b/x2: .322 0.415 .687 .130 .053 18.741 .053
1^b/same: - - - - - - -
2^c/x2: .430 2.242 .052 .599 .053 18.780 .053
2^c/same: - - - - - - -
a. Dependent variable: y
b. Predictors: (Constant), x4
c. Predictors: (Constant), x4, x1
== Collinearity Diagnostics^a
Eigenvalue | Condition Index | Variance Proportions/(Constant) | Variance Proportions/x4 | Variance Proportions/x1
1/1: 1.881 1.000 .06 .06 -
1/2: 0.119 3.982 .94 .94 -
2/1: 2.545 1.000 .02 .03 .04
2/2: 0.375 2.607 .00 .21 .55
2/3: 0.080 5.633 .98 .76 .41
a. Dependent variable: y
== Residuals Statistics^a
Minimum | Maximum | Mean | Std. Deviation | N
Predicted Value: 72.612 117.374 95.423 14.835 13
Residual: -5.023 3.770 0.000 2.496 13
Std. Predicted Value: -1.538 1.480 0.000 1.000 13
Std. Residual: -1.837 1.379 0.000 0.913 13
a. Dependent variable: y
== Prediction Sum of Squares^a
PRESS | Residual Sum of Squares | Predicted R Square
y: 121.224 74.762 .955
a. PRESS: the squared errors when each case is predicted by the regression on all other cases; its share of the total sum of squares, taken from 1, is the predicted R Square
)");
  EXPECT_EQ(shown_.find("warning at [name]: a string variable is left out: name\n"), 0U) << shown_;
  // Blom's proportions and the smallest residual of x4 and x1.
  EXPECT_NE(items_.back().find(R"("points":[[0.04716981132075472,0.0330905501646)"), std::string::npos)
      << items_.back();
}

TEST_F(RegressionCommand, SaysWhatTheDataDoNotAllow) {
  struct Row {
    std::string data, command;
    std::vector<std::string> expected;  // parts of what is shown, in order
  };
  const std::vector<Row> rows = {
      {"y,x,k\n1,,\n,2,\n",
       "/DEPENDENT y /METHOD=ENTER x k",
       {"warning at [ENTER]: no case has a value in all variables of the regression (without any value: k)"}},
      {"y,x\n1,2\n",
       "/DEPENDENT y /METHOD=ENTER x",
       {"warning at [y]: one case is not enough for a regression of y"}},
      {"y,x,k\n1,2,3\n4,3,3\n5,7,3\n",
       "/DEPENDENT k y /METHOD=ENTER x",
       {"warning at [k]: k is constant: there is nothing for a regression to explain",
        "Dependent variable: y"}},
      {"y,k\n1,3\n4,3\n5,3\n",
       "/DEPENDENT y /METHOD=FORWARD k",
       {"warning at [FORWARD]: no variables were entered into the equation for y (not entered: k (constant))",
        "Excluded Variables", "b. Predictors: (Constant)\n"}},
      {"y,a,b,c\n1,2,3,4\n2,2,5,4\n7,1,1,1\n",
       "/DEPENDENT y /METHOD=BACKWARD a b c",
       {"Not entered: c (no more cases than coefficients)", "As many coefficients as cases",
        "| 13.500 |            |", "All residuals are zero", "(a leverage of 1)",
        "warning at [BACKWARD]: no normal plot"}},
      {"y,a\n1.1,1\n2.2,2\n3.3,3\n4.4,4\n",
       "/DEPENDENT y /METHOD=STEPWISE a",
       {"The predictors determine the dependent variable exactly", "All residuals are zero"}},
      {"y,a,b\n1,1,2\n2,2,4\n4,3,6\n4,4,8\n",
       "/DEPENDENT y /METHOD=ENTER a b",
       {"Not entered: b (tolerance below .0001)"}},
      {"y,d\n1,0\n2,0\n4,0\n4,1\n",
       "/DEPENDENT y /METHOD=ENTER d",
       {"Predicted R Square", "(a leverage of 1)"}},
      {"y,a,b\n1,1e200,1\n2,2,3\n4,0,1\n4,1,7\n",
       "/DEPENDENT y /METHOD=ENTER a b",
       {"Not entered: a (values too large)"}},
      {"y,a\n1e200,1\n2,2\n4,0\n4,1\n",
       "/DEPENDENT y /METHOD=ENTER a",
       {"warning at [y]: the values of y are too large for a regression"}},
      {"y,a\n1,1\n2,0\n1,0\n2,1\n2,3\n1,3\n",
       "/DEPENDENT y /METHOD=BACKWARD a",
       {"Backward (is removed with p >= .10)", "b. Predictors: (Constant)\n"}},
      {"y,a\n1,1\n2,0\n1,0\n2,1\n2,3\n1,3\n",
       "/ORIGIN /DEPENDENT y /METHOD=BACKWARD a /CRITERIA POUT(.0501) PIN(.05)",
       {"regression through the origin", "b. Predictors: a\n", "c. Predictors: none\n"}},
      {"y,a\n0.000012,1000\n0.000021,2000\n0.000033,3000\n0.000039,4000\n",
       "/DEPENDENT y /METHOD=ENTER ALL",
       {"9.30e-09"}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.data + row.command);
    useData(row.data);
    const std::string shown = run("REGRESSION " + row.command + "/STATISTICS ALL /RESIDUALS PRESS NORMPROB.");
    std::size_t place = 0;
    for (const std::string& part : row.expected) {
      place = shown.find(part, place);
      ASSERT_NE(place, std::string::npos) << part << "\n" << shown;
    }
    for (const std::string& item : items_) {
      // Not-a-number and infinity have no other form in the document.
      EXPECT_EQ(item.find("\"number\":null"), std::string::npos) << item;
    }
    EXPECT_EQ(shown.find("nan"), std::string::npos) << shown;
  }
}

TEST_F(RegressionCommand, ShowsCoefficientsForWhateverIsAskedOfThem) {
  useData("y,x\n1,2\n3,5\n4,4\n");
  struct Row {
    std::string command, expected;  // what stands in a line of the table
  };
  const std::vector<Row> rows = {
      {"/STATISTICS=COEFF", "1/x: 0.786 0.619 .786 1.270 .425\n"},
      {"/STATISTICS=CI(99.999999)", "99.999999% Confidence Interval for B/Lower Bound"},
      {"/STATISTICS=TOL", " 1.000 1.000\n"},
      {"/STATISTICS=ZPP", " .786 .786 .786\n"},
      // Through the origin correlations are about zero: 33 / √(26 · 45).
      {"/STATISTICS=ZPP /ORIGIN", " .965 .965 .965\n"},
  };
  for (const Row& row : rows) {
    run("REGRESSION " + row.command + " /DEPENDENT y /METHOD=ENTER x.");
    const std::string table = contentsOf(items_.back());
    EXPECT_NE(table.find(row.expected), std::string::npos) << row.command << table;
  }
}

TEST_F(RegressionCommand, ThinsALongPlot) {
  std::string data = "y,x\n";
  for (int i = 0; i < 1500; ++i) {
    data += std::to_string(i * i % 97) + "," + std::to_string(i) + "\n";
  }
  useData(data);
  run("REGRESSION /DEPENDENT y /METHOD=ENTER x /RESIDUALS NORMPROB.");
  EXPECT_NE(items_.back().find("1000 of 1500 cases are shown"), std::string::npos) << items_.back();
}

TEST_F(RegressionCommand, RefusesWhatIsWrongInTheCommand) {
  useData(kCementCsv);
  struct Row {
    std::string command, expected;
  };
  const std::vector<Row> rows = {
      {"/METHOD=FORWARD x1", "error at [REGRESSION]: REGRESSION needs /DEPENDENT\n"},
      {"/DEPENDENT=y", "error at [REGRESSION]: REGRESSION needs /METHOD\n"},
      {"/DEPENDENT= /METHOD=ENTER x1", "error at [/]: DEPENDENT names no variable\n"},
      {"/DEPENDENT y /DEPENDENT x1", "error at [x1]: the dependent variable is named twice\n"},
      {"/DEPENDENT y name /METHOD=ENTER x1",
       "error at [name]: the dependent variable name is a string variable (a regression needs a numeric "
       "one)\n"},
      {"/DEPENDENT y /METHOD=ENTER ",
       "error at [.]: METHOD names no variable (expected the predictors after the method)\n"},
      {"/VARIABLES y /METHOD=ENTER /DEPENDENT y",
       "error at [/]: METHOD names no variable (expected the predictors after the method)\n"},
      {"/DEPENDENT y /METHOD=ENTER x1 y",
       "error at [y]: the dependent variable y cannot be a predictor as well\n"},
      {"/DEPENDENT y /METHOD=REMOVE x1",
       "error at [REMOVE]: unknown method \"REMOVE\" (expected ENTER, STEPWISE, FORWARD or BACKWARD)\n"},
      {"/DEPENDENT y /METHOD=ENTER x1 /CRITERIA PIN(.2)",
       "error at [PIN]: PIN must be smaller than POUT, or a selection might not end (without a value PIN is "
       ".05 "
       "and POUT .10)\n"},
      {"/DEPENDENT y /METHOD=ENTER x1 /CRITERIA PIN(0)",
       "error at [0]: the number 0 is out of range (a probability lies above 0 and up to 1)\n"},
      {"/DEPENDENT y /METHOD=ENTER x1 /CRITERIA TOLERANCE(1.5)",
       "error at [1.5]: the number 1.5 is out of range (a tolerance lies from 0 to 1)\n"},
      {"/DEPENDENT y /METHOD=ENTER x1 /STATISTICS CI(100)",
       "error at [100]: the number 100 is out of range (a confidence level lies above 0 and below 100 "
       "percent)\n"},
      {"/DEPENDENT y /METHOD=ENTER x1 /RESIDUALS=NORMPROB(SRESID)",
       "error at [SRESID]: unknown residual \"SRESID\" (expected ZRESID; did you mean ZRESID?)\n"},
      {"/DEPENDENT y /METHOD=ENTER x1 /MISSING=PAIRWISE",
       "error at [PAIRWISE]: unknown keyword \"PAIRWISE\" (expected LISTWISE)\n"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(run("REGRESSION " + row.command + "."), row.expected);
  }
}

}  // namespace
}  // namespace genostat::standalone
