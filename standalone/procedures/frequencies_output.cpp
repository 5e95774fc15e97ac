#include "standalone/procedures/frequencies_output.h"

#include <algorithm>
#include <array>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "standalone/language/translation.h"
#include "standalone/output/chart.h"
#include "standalone/output/pivot_table.h"
#include "standalone/procedures/statistic_cell.h"
#include "standalone/procedures/variable_summary.h"

namespace genostat::standalone {

namespace {

constexpr std::string_view kFrequencies = "FREQUENCIES";

struct StatisticRow {
  std::string_view label;
  int extraDecimals;  // beyond the variable's own
  bool ownDecimals;   // false: decimals do not depend on the variable
};

constexpr std::array<StatisticRow, FrequenciesRequest::StatisticCount> kStatisticRows = {{
    {marked("Mean"), 2, true},
    {marked("Std. Error of Mean"), 3, true},
    {marked("Median"), 2, true},
    {marked("Mode"), 0, true},
    {marked("Std. Deviation"), 3, true},
    {marked("Coefficient of Variation (%)"), 3, false},
    {marked("Variance"), 3, true},
    {marked("Skewness"), 3, false},
    {marked("Std. Error of Skewness"), 3, false},
    {marked("Kurtosis"), 3, false},
    {marked("Std. Error of Kurtosis"), 3, false},
    {marked("Range"), 0, true},
    {marked("Minimum"), 0, true},
    {marked("Maximum"), 0, true},
    {marked("Sum"), 0, true},
}};

CellValue frequencyCell(std::size_t count) {
  return numberCell(static_cast<double>(count), 0);
}

CellValue shapeCell(const std::optional<double>& value, int decimals) {
  return value ? numberCell(*value, decimals) : CellValue();
}

CellValue frequencyPercentCell(std::size_t part, std::size_t whole) {
  return whole == 0 ? CellValue()
                    : numberCell(100 * static_cast<double>(part) / static_cast<double>(whole), 1);
}

std::string withoutTrailingZeros(std::string text) {
  if (text.find('.') == std::string::npos || text.find('e') != std::string::npos) return text;
  text.erase(text.find_last_not_of('0') + 1);
  if (text.back() == '.') text.pop_back();
  return text;
}

// One column for each variable.
class StatisticsTable {
 public:
  explicit StatisticsTable(const FrequenciesRequest& request) : request_(request) {
    table_.title = translated("Statistics");
    table_.rows.push_back({"N", {{translated("Valid"), {}}, {translated("Missing"), {}}}});
    for (std::size_t i = 0; i < kStatisticRows.size(); ++i) {
      if (request.statistics.test(i)) table_.rows.push_back({translated(kStatisticRows[i].label), {}});
    }
    if (!request.percentiles.empty()) table_.rows.push_back({translated("Percentiles"), percentileLabels()});
    table_.cells.resize(leafCount(table_.rows));
  }

  void add(const VariableSummary& summary) {
    const Column& variable = *summary.variable;
    table_.columns.push_back({variable.name, {}});
    auto row = table_.cells.begin();
    (row++)->push_back(frequencyCell(summary.validCount));
    (row++)->push_back(frequencyCell(summary.missingCount));
    for (std::size_t i = 0; i < kStatisticRows.size(); ++i) {
      if (request_.statistics.test(i)) (row++)->push_back(markedCell(summary, i));
    }
    constexpr int kInterpolatedDecimals = 2;
    for (const std::optional<double>& percentile : summary.percentiles) {
      (row++)->push_back(statisticCell(variable, percentile, kInterpolatedDecimals));
    }
  }

  const PivotTable& table() const { return table_; }

 private:
  std::vector<Category> percentileLabels() const {
    constexpr int kPercentDecimals = 4;
    std::vector<double> percents;
    for (const Share& share : request_.percentiles) {
      percents.push_back(share.percent);
    }
    std::vector<Category> labels;
    for (std::string& label : distinctLabels(percents, kPercentDecimals)) {
      labels.push_back({withoutTrailingZeros(std::move(label)), {}});
    }
    return labels;
  }

  CellValue markedCell(const VariableSummary& summary, std::size_t statistic) {
    const std::optional<double>& value = summary.statistics[statistic];
    const StatisticRow& row = kStatisticRows[statistic];
    CellValue cell = row.ownDecimals ? statisticCell(*summary.variable, value, row.extraDecimals)
                                     : shapeCell(value, row.extraDecimals);
    if (statistic == FrequenciesRequest::Mode && summary.severalModes)
      cell.mark = markOf(translated("Multiple modes exist. The smallest value is shown."));
    if (statistic == FrequenciesRequest::Variation && summary.statistics[FrequenciesRequest::Mean] == 0.0)
      rowLabel(statistic).mark = markOf(translated("There is none where the mean is 0."));
    return cell;
  }

  Category& rowLabel(std::size_t statistic) {
    return *std::ranges::find(table_.rows, translated(kStatisticRows[statistic].label), &Category::label);
  }

  // The letter of a footnote, which is added when it is new.
  std::string markOf(const std::string& text) {
    const auto known = std::ranges::find(notes_, text);
    std::string mark(1, static_cast<char>('a' + (known - notes_.begin())));
    if (known == notes_.end()) {
      notes_.push_back(text);
      table_.footnotes.push_back(mark + ". " + text);
    }
    return mark;
  }

  const FrequenciesRequest& request_;
  PivotTable table_;
  std::vector<std::string> notes_;
};

void sortRows(std::vector<ValueRow>& rows, FrequenciesRequest::RowOrder order) {
  switch (order) {
    case FrequenciesRequest::RowOrder::AscendingValues:
      break;
    case FrequenciesRequest::RowOrder::DescendingValues:
      std::ranges::reverse(rows);
      break;
    case FrequenciesRequest::RowOrder::AscendingCounts:
      std::ranges::stable_sort(rows, std::less<>(), &ValueRow::count);
      break;
    case FrequenciesRequest::RowOrder::DescendingCounts:
      std::ranges::stable_sort(rows, std::greater<>(), &ValueRow::count);
      break;
  }
}

PivotTable valuesTable(const VariableSummary& summary, FrequenciesRequest::RowOrder order) {
  const std::size_t valid = summary.validCount;
  const std::size_t all = valid + summary.missingCount;
  PivotTable table;
  table.title = summary.variable->name;
  table.columns = {{translated("Frequency"), {}},
                   {translated("Percent"), {}},
                   {translated("Valid Percent"), {}},
                   {translated("Cumulative Percent"), {}}};
  std::vector<ValueRow> rows = summary.values;
  sortRows(rows, order);
  if (!rows.empty()) table.rows.push_back({translated("Valid"), {}});
  std::size_t cumulative = 0;
  for (ValueRow& row : rows) {
    cumulative += row.count;
    table.rows.front().children.push_back({std::move(row.label), {}});
    table.cells.push_back({frequencyCell(row.count), frequencyPercentCell(row.count, all),
                           frequencyPercentCell(row.count, valid), frequencyPercentCell(cumulative, valid)});
  }
  if (!rows.empty()) {
    table.rows.front().children.push_back({translated("Total"), {}});
    table.cells.push_back(
        {frequencyCell(valid), frequencyPercentCell(valid, all), frequencyPercentCell(valid, valid), {}});
  }
  if (summary.missingCount > 0) {
    table.rows.push_back({translated("Missing"), {{translated("System"), {}}}});
    table.cells.push_back(
        {frequencyCell(summary.missingCount), frequencyPercentCell(summary.missingCount, all), {}, {}});
  }
  if (rows.empty() || summary.missingCount > 0) {
    table.rows.push_back({translated("Total"), {}});
    table.cells.push_back({frequencyCell(all), frequencyPercentCell(all, all), {}, {}});
  }
  return table;
}

Chart histogramOf(const VariableSummary& summary, bool normalCurve) {
  const std::optional<double>& deviation = summary.statistics[FrequenciesRequest::Deviation];
  Histogram histogram;
  histogram.variable = summary.variable->name;
  histogram.firstEdge = summary.bins->firstEdge;
  histogram.binWidth = summary.bins->width;
  histogram.counts = summary.bins->counts;
  histogram.validCount = summary.validCount;
  histogram.mean = summary.statistics[FrequenciesRequest::Mean];
  histogram.deviation = deviation;
  Chart chart{translated("Histogram of {1}", {histogram.variable}), {}, {}};
  if (normalCurve) {
    histogram.normalCurve = histogram.mean && deviation && *deviation > 0;
    if (!histogram.normalCurve)
      chart.notes.push_back(translated("No normal curve: the values have no spread."));
  }
  chart.data = std::move(histogram);
  return chart;
}

void addValuesTable(const VariableSummary& summary, const FrequenciesRequest& request,
                    OutputDocument& output) {
  if (summary.distinctCount > request.mostRows) {
    output.addText("note", translated("{1} has {2} distinct values; the table of them is left out "
                                      "(/FORMAT=LIMIT(n) shows up to n, now {3})",
                                      {summary.variable->name, std::to_string(summary.distinctCount),
                                       std::to_string(request.mostRows)}));
    return;
  }
  output.addTable(kFrequencies, valuesTable(summary, request.rowOrder));
}

void addHistogram(const VariableSummary& summary, const FrequenciesRequest& request, OutputDocument& output) {
  if (summary.bins) {
    output.addChart(kFrequencies, histogramOf(summary, request.normalCurves));
  } else if (summary.variable->type == Column::Type::Numeric) {
    output.addText(
        "note", translated(summary.validCount == 0
                               ? "{1} has no histogram: it has no values"
                               : "{1} has no histogram: its values lie too far apart or too close together",
                           {summary.variable->name}));
  }
}

// That string variables have no statistics, where any are asked for.
void addStringNote(const FrequenciesRequest& request, OutputDocument& output) {
  if (request.statistics.none() && request.percentiles.empty() && !request.histograms) return;
  std::string names;
  for (const Column* variable : request.variables) {
    if (variable->type == Column::Type::String) names += (names.empty() ? "" : ", ") + variable->name;
  }
  if (!names.empty())
    output.addText("note", translated("string variables have no statistics and no histogram: {1}", {names}));
}

}  // namespace

void showFrequencies(const FrequenciesRequest& request, OutputDocument& output) {
  addStringNote(request, output);
  // Statistics, tables and histograms of the summaries, each kind together.
  const auto show = [&](const std::vector<VariableSummary>& summaries) {
    StatisticsTable statistics(request);
    std::ranges::for_each(summaries, [&](const VariableSummary& summary) { statistics.add(summary); });
    output.addTable(kFrequencies, statistics.table());
    for (std::size_t i = 0; request.tables && i < summaries.size(); ++i) {
      addValuesTable(summaries[i], request, output);
    }
    for (std::size_t i = 0; request.histograms && i < summaries.size(); ++i) {
      addHistogram(summaries[i], request, output);
    }
  };
  std::vector<VariableSummary> summaries;
  for (const Column* variable : request.variables) {
    summaries.push_back(summarizeVariable(*variable, request));
    if (!request.byVariable) continue;
    show(summaries);
    summaries.clear();
  }
  if (!request.byVariable) show(summaries);
}

}  // namespace genostat::standalone
