// What reaches the terminal.

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "common/text/utf8.h"
#include "standalone/output/number_format.h"
#include "standalone/output/output_document.h"
#include "standalone/output/text_renderer.h"

namespace genostat::standalone {
namespace {

CellValue number(double value, int decimals, bool leadingZero = true) {
  return {value, {decimals, leadingZero}};
}
CellValue text(const std::string& value) {
  return {value, {}};
}

std::string render(const PivotTable& table, const TextStyle& style) {
  OutputDocument document;
  std::string rendered;
  document.onItem([&](const std::string& item) { rendered += renderItemAsText(item, style); });
  document.addTable("TEST", table);
  return rendered;
}

std::string renderText(const std::string& kind, const std::string& message, bool colour) {
  OutputDocument document;
  std::string rendered;
  document.onItem([&](const std::string& item) { rendered += renderItemAsText(item, {false, colour, 80}); });
  document.addText(kind, message);
  return rendered;
}

TEST(NumberFormat, FollowsTheFormat) {
  struct Row {
    double value;
    NumberFormat format;
    std::string expected;
  };
  const std::vector<Row> rows = {
      {2, {0, true}, "2"},
      {2.345, {2, true}, "2.35"},
      {-0.0001, {0, true}, "-1.00e-04"},
      {-0.0, {2, true}, "0.00"},
      {0.0004, {3, false}, ".000"},
      {-0.25, {3, false}, "-.250"},
      {-0.0004, {3, false}, ".000"},
      {1, {3, false}, "1.000"},
      {1e15, {0, true}, "1.00e+15"},
      {-1e300, {3, true}, "-1.000e+300"},
      {0.7, {-3, true}, "1"},
      {std::numeric_limits<double>::infinity(), {}, ""},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(formatNumber(row.value, row.format), row.expected) << row.value;
  }
}

PivotTable correlations() {
  PivotTable table;
  table.title = "Correlations";
  table.rowLabel = "Variable";
  table.columnLabel = "With";
  table.columns = {{"GC", {}}, {"Total", {{"Bases", {}}, {"Sequences", {}}}}};
  table.rows = {{"GC", {{"Pearson Correlation", {}}, {"Sig. (2-tailed)", {}}}}, {"Remark", {}}};
  table.cells = {{number(1, 3), number(.5, 3), number(-.25, 3)},
                 {{}, number(.0004, 3, false), number(.04, 3, false)},
                 {text("tab\there"), text("\xC3\xA9t\xC3\xA9"), text("\xE6\x95\xB0")}};
  table.footnotes = {"Listwise N=4"};
  return table;
}

TEST(TextTable, NestsLabelsAndLinesUpValues) {
  EXPECT_EQ(render(correlations(), {true, true, 80}),
            "\n\x1B[1mCorrelations\x1B[0m"
            R"(
┌──────────────────────────┬───────────────────────────────┐
│                          │             With              │
│                          ├───────────┬───────────────────┤
│                          │           │       Total       │
│                          │           ├───────┬───────────┤
│ Variable                 │ GC        │ Bases │ Sequences │
├────┬─────────────────────┼───────────┼───────┼───────────┤
│ GC │ Pearson Correlation │     1.000 │ 0.500 │    -0.250 │
│    │ Sig. (2-tailed)     │           │  .000 │      .040 │
├────┴─────────────────────┼───────────┼───────┼───────────┤
│ Remark                   │ tab\there │ été   │ 数        │
└──────────────────────────┴───────────┴───────┴───────────┘
Listwise N=4
)");
}

TEST(TextTable, HangsMarksBesideTheDigits) {
  PivotTable table;
  table.title = "Correlations";
  table.titleMark = "a";
  table.columns = {{"GC", {}, "b"}, {"Remark", {}}};
  table.rows = {{"one", {}, "c"}, {"two", {}}, {"three", {}}, {"none", {}}};
  table.cells = {{number(-.25, 3), text("x")}, {number(.5, 3), number(2, 0)}, {number(1, 3)}, {}};
  table.cells[0][0].mark = "**";
  table.cells[1][0].mark = "*";
  table.cells[0][1].mark = "d";
  EXPECT_EQ(render(table, {}), R"(
Correlations (a)
+---------+----------+--------+
|         |   GC (b) | Remark |
+---------+----------+--------+
| one (c) | -0.250** | x (d)  |
| two     |  0.500*  |      2 |
| three   |  1.000   |        |
| none    |          |        |
+---------+----------+--------+
)");
}

TEST(TextTable, SplitsAtTheWidthAndKeepsGroupsTogether) {
  EXPECT_EQ(render(correlations(), {false, false, 50}), R"(
Correlations
+--------------------------+-----------+
|                          |   With    |
|                          +-----------+
| Variable                 | GC        |
+----+---------------------+-----------+
| GC | Pearson Correlation |     1.000 |
|    | Sig. (2-tailed)     |           |
+----+---------------------+-----------+
| Remark                   | tab\there |
+--------------------------+-----------+
+--------------------------+-------------------+
|                          |       With        |
|                          +-------------------+
|                          |       Total       |
|                          +-------+-----------+
| Variable                 | Bases | Sequences |
+----+---------------------+-------+-----------+
| GC | Pearson Correlation | 0.500 |    -0.250 |
|    | Sig. (2-tailed)     |  .000 |      .040 |
+----+---------------------+-------+-----------+
| Remark                   | été   | 数        |
+--------------------------+-------+-----------+
Listwise N=4
)");
}

// Whatever the width, a box is a box and stays within it.
TEST(TextTable, KeepsItsShapeAtEveryWidth) {
  PivotTable table = correlations();
  table.rows.push_back({"total_deduplicated_percentage \xE6\x95\xB0\xE6\x8D\xAE", {}});
  table.cells.push_back({text("a text of many words that has to be wrapped"), number(123456.789, 3), {}});
  PivotTable wide;
  wide.rows = {{"1", {}}};
  wide.cells.resize(1);
  for (const char* name : {"median_phred_first_10bp", "median_phred_last_10bp", "mean_phred_all_reads",
                           "low_complexity_percentage", "unexpected_bases_percentage"}) {
    wide.columns.push_back({name, {}});
    wide.cells.front().push_back(number(34, 4));
  }
  for (int width = 45; width <= 140; ++width) {
    const std::string rendered = render(table, {false, false, width}) + render(wide, {false, false, width});
    int boxWidth = 0;
    for (std::size_t begin = 0; begin < rendered.size();) {
      const std::size_t end = rendered.find('\n', begin);
      const std::string line = rendered.substr(begin, end - begin);
      EXPECT_LE(common::displayWidth(line), width) << rendered;
      if (line.starts_with('+')) boxWidth = common::displayWidth(line);
      EXPECT_TRUE(!line.starts_with('|') || common::displayWidth(line) == boxWidth) << rendered;
      begin = end + 1;
    }
  }
}

TEST(TextTable, TakesTablesWithoutCellsOrLabels) {
  EXPECT_EQ(render({}, {}), "\n");
  PivotTable rowsOnly;
  rowsOnly.title = "T";
  rowsOnly.rows = {{"a", {}}};
  EXPECT_EQ(render(rowsOnly, {}), "\nT\n+---+\n| a |\n+---+\n");
  PivotTable cellsOnly;
  cellsOnly.cells = {{text("1"), text("x")}, {text("20")}};
  EXPECT_EQ(render(cellsOnly, {}), "\n+---+----+---+\n|   |  1 | x |\n|   | 20 |   |\n+---+----+---+\n");
}

TEST(TextItems, SayWhatTheyAre) {
  EXPECT_EQ(renderText("error", "it broke", false), "error: it broke\n");
  EXPECT_EQ(renderText("error", "f:1:2: error: it broke\n  x\n  ^", true),
            "\x1B[31mf:1:2: error: it broke\n  x\n  ^\x1B[0m\n");
  EXPECT_EQ(renderText("warning", "\x1B[2Jodd\n", true), "\x1B[33mwarning: \\x1B[2Jodd\x1B[0m\n");
  EXPECT_EQ(renderText("note", "job run_1 ended", true), "job run_1 ended\n");
  EXPECT_EQ(renderItemAsText(R"({"type":"chart","title":"GC\n"})", {}),
            "\n[chart: GC\\n; shown in HTML output]\n");
  EXPECT_EQ(renderItemAsText(R"({"type":"picture"})", {}), "");
}

}  // namespace
}  // namespace genostat::standalone
