// Writes the report that report_test.mjs opens: every kind of item, with texts that try to become code.
#include <cmath>
#include <cstddef>
#include <fstream>
#include <iostream>
#include <limits>
#include <string>
#include <vector>

#include "standalone/output/html_report.h"
#include "standalone/output/output_document.h"

namespace {

using namespace std::string_literals;
namespace standalone = genostat::standalone;

const std::vector<std::string> kHostile = {
    "<script>window.harmed=1</script>",
    "</script><script>window.harmed=2</script>",
    "\"><img src=x onerror=\"window.harmed=3\">",
    "' onmouseover='window.harmed=4",
    "{{signal}} datum['x'] + (window.harmed=5)",
    "a.b[0]\\.c",
    "<!-- --> <![CDATA[ &amp; &lt;",
    "</style></title></textarea><svg onload=window.harmed=6>",
    "=HYPERLINK(\"javascript:window.harmed=7\")",
    "\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D \xD8\xA7\xD9\x84\xD8\xB9\xD8\xB1",
    "\xE2\x80\xAEgnp.elpmas\xE2\x80\xAC",
    "\xF0\x9F\xA7\xAC sample \xE6\x95\xB0\xE6\x8D\xAE",
    "bell\x07 null\0 escape\x1B[31m\ttab"s,
    "line\nbreak \xFF\xC3",
    std::string(300, 'W') + "_long",
    "",
    "__proto__",
    "${window.harmed=8}`",
};

const std::string& hostile(std::size_t i) {
  return kHostile[i % kHostile.size()];
}

double wave(std::size_t i) {
  return std::sin(static_cast<double>(i) * 1.7) * 3 + static_cast<double>(i % 7);
}

standalone::PivotTable hostileTable() {
  standalone::PivotTable table;
  table.title = kHostile[0];
  table.titleMark = "a";
  table.rowLabel = kHostile[2];
  table.columnLabel = kHostile[1];
  table.columns = {{kHostile[3], {{"r", {}, "b"}, {kHostile[7], {}}}}, {"Sig.", {}}};
  for (std::size_t i = 0; i < kHostile.size(); i += 2) {
    table.rows.push_back({hostile(i), {{"Pearson Correlation", {}}, {hostile(i + 1), {}}}});
    auto coefficient = standalone::numberCell(wave(i) / 10, 3);
    coefficient.mark = "**";
    table.cells.push_back({coefficient, standalone::textCell(hostile(i)), standalone::fractionCell(.04)});
    table.cells.push_back({{}, standalone::textCell(hostile(i + 1)), standalone::fractionCell(.0001)});
  }
  table.footnotes = {"a. " + kHostile[0], "**. " + kHostile[2]};
  return table;
}

standalone::PivotTable wideTable() {
  standalone::PivotTable table;
  table.title = "Wide table";
  for (int i = 0; i < 40; ++i) {
    table.columns.push_back({"variable_" + std::to_string(i), {}});
  }
  table.rows = {{"Mean", {}}};
  table.cells = {std::vector<standalone::CellValue>(40, standalone::numberCell(12345.678, 3))};
  return table;
}

standalone::ScatterMatrix scatterMatrix(std::size_t variables, std::size_t cases) {
  standalone::ScatterMatrix matrix;
  for (std::size_t v = 0; v < variables; ++v) {
    matrix.variables.push_back(hostile(v));
    std::vector<double>& values = matrix.values.emplace_back();
    for (std::size_t i = 0; i < cases; ++i) {
      values.push_back(wave(i * (v + 1)));
    }
  }
  matrix.values[0][0] = std::numeric_limits<double>::quiet_NaN();
  return matrix;
}

standalone::VerdictMap verdictMap(std::size_t samples) {
  standalone::VerdictMap map;
  for (std::size_t c = 0; c < 12; ++c) {
    map.checks.push_back(c < 4 ? hostile(c) : "per_base_sequence_quality_" + std::to_string(c));
  }
  for (std::size_t s = 0; s < samples; ++s) {
    map.samples.push_back(s < kHostile.size() ? hostile(s) : "sample " + std::to_string(s));
    std::vector<genostat::common::Verdict>& row = map.verdicts.emplace_back();
    for (std::size_t c = 0; c < 12; ++c) {
      row.push_back(static_cast<genostat::common::Verdict>((s * 5 + c * 3 + s * c) % 4));
    }
  }
  return map;
}

standalone::ProbabilityPlot probabilityPlot() {
  standalone::ProbabilityPlot plot{kHostile[4], {}};
  for (int i = 0; i < 60; ++i) {
    const double observed = (i + 0.5) / 60;
    plot.points.push_back({observed, observed + 0.04 * std::sin(i / 5.0)});
  }
  return plot;
}

void fill(standalone::OutputDocument& document) {
  document.addText("note", "outside of commands");
  document.beginCommand("run.syntax");
  document.addTable("CORRELATIONS", hostileTable());
  document.addTable("CORRELATIONS", wideTable());
  document.addChart("CORRELATIONS", {kHostile[1], {kHostile[0]}, scatterMatrix(4, 50)});
  document.beginCommand("<job '" + kHostile[0] + "'>");
  document.addText("error", "a.syntax:1:1: error: unknown command\n  " + kHostile[1] + "\n  ^~~");
  document.addText("warning", kHostile[2]);
  document.addTable(kHostile[2], standalone::PivotTable{});
  document.addChart("FREQUENCIES", {"Histogram",
                                    {},
                                    standalone::Histogram{
                                        kHostile[4], -1.5, 0.5, {1, 4, 9, 12, 7, 0, 2}, 35, -.1, .8, true}});
  document.addChart("FREQUENCIES",
                    {"One bin", {}, standalone::Histogram{kHostile[5], 5, 1, {3}, 3, 5.5, 0, true}});
  document.addChart("REGRESSION", {"Normal P-P Plot", {}, probabilityPlot()});
  document.addChart("REGRESSION", {"No points", {}, standalone::ProbabilityPlot{"", {}}});
  document.beginCommand("last");
  document.addChart("GENOSTAT", {"Verdicts", {}, verdictMap(36)});
}

// As large as jobs come.
void fillLarge(standalone::OutputDocument& document) {
  document.beginCommand("last");
  for (int i = 0; i < 200; ++i) {
    document.addTable("CORRELATIONS", hostileTable());
  }
  document.addChart("GENOSTAT", {"Samples", {}, verdictMap(96)});
  document.addChart("CORRELATIONS", {"Many variables", {}, scatterMatrix(27, 96)});
  document.addChart("GENOSTAT", {"Many samples", {}, verdictMap(1000)});
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: make_report small|large FILE\n";
    return 2;
  }
  standalone::OutputDocument document;
  if (argv[1] == "large"s) {
    fillLarge(document);
  } else {
    fill(document);
  }
  std::ofstream file(argv[2], std::ios::binary);
  file << standalone::renderHtmlReport(document.items(), kHostile[7]);
  return file.flush() ? 0 : 1;
}
