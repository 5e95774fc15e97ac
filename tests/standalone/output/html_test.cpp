// What keeps a page whole whatever stands in the data. tests/browser opens pages in a browser.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <limits>
#include <string>
#include <vector>

#include "standalone/output/chart_json.h"
#include "standalone/output/html_parts.h"
#include "standalone/output/html_report.h"
#include "standalone/output/output_document.h"
#include "standalone/output/report_assets.h"

namespace genostat::standalone {
namespace {

using testing::HasSubstr;
using testing::Not;

TEST(HtmlText, LetsNothingBecomeMarkup) {
  const struct {
    std::string text, html;
  } rows[] = {
      {"", ""},
      {"GC % of 1.fastq", "GC % of 1.fastq"},
      {"<script>", "&lt;script&gt;"},
      {R"("><img onerror='x'>)", "&quot;&gt;&lt;img onerror=&#39;x&#39;&gt;"},
      {"&lt;", "&amp;lt;"},
      {std::string("a\0b\x1B\r", 5), "a\\x00b\\x1B\\r"},
      {"\xE2\x80\xAEgpj.\xFF", "\\u202Egpj.\xEF\xBF\xBD"},
      {"\xD7\xA9 \xF0\x9F\xA7\xAC", "\xD7\xA9 \xF0\x9F\xA7\xAC"},
      {"a\n\tb", "a\\n\\tb"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(escapeHtml(row.text), row.html) << row.text;
  }
  EXPECT_EQ(escapeHtml("a\n<\t\r", common::LineBreaks::Keep), "a\n&lt;\t\\r");
}

TEST(HtmlText, KeepsTheValuesOfJsonInAScript) {
  const std::string json = R"({"</script><!--":["&","\u003c","\\<"]})";
  const std::string escaped = escapeScriptJson(json);
  EXPECT_EQ(escaped.find_first_of("<>&"), std::string::npos) << escaped;
  rapidjson::Document before;
  rapidjson::Document after;
  EXPECT_TRUE(before.Parse(json.c_str()) == after.Parse(escaped.c_str())) << escaped;
}

TEST(HtmlTable, NestsLabelsAsSpans) {
  PivotTable table;
  table.title = "T";
  table.rowLabel = "Row";
  table.columns = {{"duplicated_reads", {}}, {"B", {{"b1", {}}, {"b2", {}, "a"}}}};
  table.rows = {{"g", {{"r1", {}}, {"r2", {}}}}, {"h", {}}};
  table.cells = {{numberCell(1, 1), textCell("<x>"), fractionCell(.5)}, {}, {numberCell(2, 1)}};
  table.cells[0][0].mark = "*";
  table.footnotes = {"a. note"};
  squareUp(table);
  EXPECT_EQ(renderTableAsHtml(table, "t", "P"), R"(<div class="table" id="t">
<div class="scroll" role="group" tabindex="0" aria-labelledby="t-title">
<table aria-describedby="t-notes">
<caption class="title" id="t-title">T</caption>
<thead>
<tr><th rowspan="2" colspan="2" data-bottom scope="colgroup">Row</th><th rowspan="2" data-bottom scope="col" class="number">duplicated_<wbr>reads</th><th colspan="2" scope="colgroup" class="span">B</th></tr>
<tr><th scope="col">b1</th><th scope="col" class="number">b2<sup>a</sup></th></tr>
</thead>
<tbody>
<tr><th rowspan="2" scope="rowgroup" class="group short">g</th><th scope="row" class="short">r1</th><td class="number">1.0<sup>*</sup></td><td>&lt;x&gt;</td><td class="number">.500</td></tr>
<tr><th scope="row" class="short">r2</th><td class="number"></td><td></td><td class="number"></td></tr>
<tr class="rule"><th colspan="2" scope="row" class="short">h</th><td class="number">2.0</td><td></td><td class="number"></td></tr>
</tbody>
</table>
</div>
<ul class="notes" id="t-notes">
<li>a. note</li>
</ul>
</div>
)");
}

// A chart survives the way into an item and back.
TEST(ChartJson, ReadsWhatItWrites) {
  const double missing = std::numeric_limits<double>::quiet_NaN();
  using common::Verdict;
  const std::vector<Chart> charts = {
      {"t", {"n"}, Histogram{"v", -1, .5, {1, 0, 7}, 8, .25, std::nullopt, true}},
      {"", {}, ProbabilityPlot{"r", {{.1, .2}, {1, 0}}}},
      {"", {}, ScatterMatrix{{"a", "b"}, {{1, missing}, {2, 1e300}}}},
      {"",
       {},
       VerdictMap{
           {"s"}, {"c", "d", "e", "f"}, {{Verdict::Fail, Verdict::None, Verdict::Warn, Verdict::Pass}}}},
  };
  const auto toJson = [](const Chart& chart) {
    rapidjson::StringBuffer buffer;
    JsonWriter writer(buffer);
    writer.StartObject();
    writeChartMembers(writer, chart);
    writer.EndObject();
    return std::string(buffer.GetString());
  };
  for (const Chart& chart : charts) {
    const std::string json = toJson(chart);
    EXPECT_EQ(toJson(readChart(parseJson(json))), json);
  }
  for (const char* malformed :
       {R"({"kind":"pie"})", R"({"kind":"verdicts","notes":[]})",
        R"({"kind":"histogram","notes":[],"counts":[-1]})",
        R"({"kind":"normalProbability","notes":[],"points":[[1]]})",
        R"({"kind":"scatterMatrix","notes":[],"variables":["a"],"values":[]})",
        R"({"kind":"scatterMatrix","notes":[],"variables":["a","b"],"values":[[1],[]]})"}) {
    EXPECT_THROW(readChart(parseJson(malformed)), JsonFormatError) << malformed;
  }
}

TEST(HtmlChart, ThinsCloudsAndSaysSo) {
  const std::string html = renderChartAsHtml(
      {"S", {}, ScatterMatrix{{"a", "b"}, {std::vector<double>(90'000, 1), std::vector<double>(90'000, 2)}}},
      "c");
  EXPECT_THAT(html, HasSubstr("One of every 3 points"));
  EXPECT_THAT(html, HasSubstr("90000 cases"));
  EXPECT_LT(html.size(), 300'000U);
}

TEST(ChartSummary, TellsEdgesFarFromZeroApart) {
  const Chart chart = {"t", {}, Histogram{"v", 1234567890, .5, {1, 3}, 4, {}, {}, false}};
  EXPECT_EQ(summarizeChart(chart), "4 values; the tallest bar, 1234567890.5 to 1234567891, counts 3.");
}

TEST(HtmlReport, CarriesWhatItNeeds) {
  OutputDocument document;
  const auto page = [&] { return renderHtmlReport(document.items(), "a & b"); };
  EXPECT_THAT(page(), HasSubstr("<title>a &amp; b</title>"));
  document.addText("error", "x");
  const std::string charts(reportAssets().charts.text);
  EXPECT_THAT(page(), Not(HasSubstr(charts)));
  document.addChart("FREQUENCIES", {"H", {}, Histogram{"v", 0, 1, {1}, 1, {}, {}, false}});
  EXPECT_THAT(page(), HasSubstr(charts));
  EXPECT_EQ(page(), page());
}

}  // namespace
}  // namespace genostat::standalone
