#include <algorithm>
#include <functional>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>

#include "standalone/language/translation.h"
#include "standalone/output/chart.h"
#include "standalone/output/pivot_table.h"
#include "standalone/procedures/frequencies.h"
#include "standalone/procedures/table_cells.h"
#include "standalone/procedures/variable_list.h"
#include "standalone/procedures/variable_summary.h"

namespace genostat::standalone {

namespace {

constexpr std::string_view kFrequencies = "FREQUENCIES";

CellValue frequencyPercentCell(std::size_t part, std::size_t whole) {
  return whole == 0 ? CellValue()
                    : numberCell(100 * static_cast<double>(part) / static_cast<double>(whole), 1);
}

// One column for each variable.
class StatisticsTable {
 public:
  explicit StatisticsTable(const FrequenciesRequest& request) : request_(request) {
    table_.title = translated("Statistics");
    table_.rows.push_back({"N", {{translated("Valid"), {}}, {translated("Missing"), {}}}});
    for (const Statistic& statistic : request.statistics) {
      table_.rows.push_back({translated(statistic.label), {}});
    }
    if (!request.percentiles.empty()) table_.rows.push_back({translated("Percentiles"), percentileLabels()});
    table_.cells.resize(leafCount(table_.rows));
  }

  void add(const VariableSummary& summary) {
    const Column& variable = *summary.variable;
    table_.columns.push_back({variable.name, {}});
    auto row = table_.cells.begin();
    (row++)->push_back(countCell(summary.validCount));
    (row++)->push_back(countCell(summary.missingCount));
    for (std::size_t i = 0; i < request_.statistics.size(); ++i) {
      (row++)->push_back(markedCell(summary, i));
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
      labels.push_back({withoutTrailingZeros(std::move(label), 0), {}});
    }
    return labels;
  }

  CellValue markedCell(const VariableSummary& summary, std::size_t number) {
    const Statistic& statistic = request_.statistics[number];
    CellValue cell = statistic.cell(*summary.variable, summary.statistics.*statistic.value);
    if (statistic.value == kMode.value && summary.severalModes)
      cell.mark = markOf(table_.footnotes, translated("Multiple modes exist. The smallest value is shown."));
    // The rows of the statistics come after the one of N.
    if (statistic.value == kVariation.value && summary.statistics.mean == 0.0)
      table_.rows[1 + number].mark =
          markOf(table_.footnotes, translated("There is no coefficient of variation where the mean is 0."));
    return cell;
  }

  const FrequenciesRequest& request_;
  PivotTable table_;
};

void sortRows(std::vector<ValueRow>& rows, FrequenciesRequest::RowOrder order) {
  using RowOrder = FrequenciesRequest::RowOrder;
  if (order == RowOrder::DescendingValues) std::ranges::reverse(rows);
  if (order == RowOrder::AscendingCounts) std::ranges::stable_sort(rows, std::less<>(), &ValueRow::count);
  if (order == RowOrder::DescendingCounts) std::ranges::stable_sort(rows, std::greater<>(), &ValueRow::count);
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
    table.cells.push_back({countCell(row.count), frequencyPercentCell(row.count, all),
                           frequencyPercentCell(row.count, valid), frequencyPercentCell(cumulative, valid)});
  }
  if (!rows.empty()) {
    table.rows.front().children.push_back({translated("Total"), {}});
    table.cells.push_back(
        {countCell(valid), frequencyPercentCell(valid, all), frequencyPercentCell(valid, valid), {}});
  }
  if (summary.missingCount > 0) {
    table.rows.push_back({translated("Missing"), {{translated("System"), {}}}});
    table.cells.push_back(
        {countCell(summary.missingCount), frequencyPercentCell(summary.missingCount, all), {}, {}});
  }
  if (rows.empty() || summary.missingCount > 0) {
    table.rows.push_back({translated("Total"), {}});
    table.cells.push_back({countCell(all), frequencyPercentCell(all, all), {}, {}});
  }
  return table;
}

Chart histogramOf(const VariableSummary& summary, bool normalCurve) {
  const std::optional<double>& deviation = summary.statistics.standardDeviation;
  Histogram histogram;
  histogram.variable = summary.variable->name;
  histogram.firstEdge = summary.bins->firstEdge;
  histogram.binWidth = summary.bins->width;
  histogram.counts = summary.bins->counts;
  histogram.validCount = summary.validCount;
  histogram.mean = summary.statistics.mean;
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
  if (request.statistics.empty() && request.percentiles.empty() && !request.histograms) return;
  std::vector<const Column*> strings;
  std::ranges::copy_if(request.variables, std::back_inserter(strings),
                       [](const Column* variable) { return variable->type == Column::Type::String; });
  if (!strings.empty())
    output.addText("note", translated("string variables have no statistics and no histogram: {1}",
                                      {joinedNames(strings)}));
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
