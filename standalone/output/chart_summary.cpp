#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "standalone/language/translation.h"
#include "standalone/output/chart.h"

namespace genostat::standalone {

namespace {

constexpr int kUsualDigits = 6;

// With at most so many significant digits.
std::string shortNumber(double value, int digits = kUsualDigits) {
  return fmt::format("{:.{}g}", value, digits);
}

double edgeOf(const Histogram& histogram, std::size_t bin) {
  return histogram.firstEdge + static_cast<double>(bin) * histogram.binWidth;
}

// As many digits as distinguish one edge from the next, even far from 0.
int digitsOfEdges(const Histogram& histogram) {
  constexpr int kMostDigits = 17;
  const double largest =
      std::max(std::abs(histogram.firstEdge), std::abs(edgeOf(histogram, histogram.counts.size())));
  const double digits = std::ceil(std::log10(largest / histogram.binWidth)) + 2;
  return digits > kUsualDigits ? static_cast<int>(std::min<double>(digits, kMostDigits)) : kUsualDigits;
}

std::string binName(const Histogram& histogram, std::size_t bin) {
  const int digits = digitsOfEdges(histogram);
  return translated("{1} to {2}", {shortNumber(edgeOf(histogram, bin), digits),
                                   shortNumber(edgeOf(histogram, bin + 1), digits)});
}

std::string summaryOf(const Histogram& histogram) {
  std::string text = translatedCount(histogram.validCount, "{1} value", "{1} values");
  if (histogram.mean) text += ", " + translated("mean {1}", {shortNumber(*histogram.mean)});
  if (histogram.deviation)
    text += ", " + translated("standard deviation {1}", {shortNumber(*histogram.deviation)});
  const auto tallest = std::max_element(histogram.counts.begin(), histogram.counts.end());
  if (tallest != histogram.counts.end()) {
    const auto bin = static_cast<std::size_t>(tallest - histogram.counts.begin());
    text = translated("{1}; the tallest bar, {2}, counts {3}",
                      {text, binName(histogram, bin), std::to_string(*tallest)});
  }
  return text + '.';
}

std::string summaryOf(const ProbabilityPlot& plot) {
  double farthest = 0;
  for (const ProbabilityPlot::Point& point : plot.points) {
    const double distance = std::abs(point.observed - point.expected);
    if (distance > farthest) farthest = distance;
  }
  return translated(
      "{1}, {2}; the farthest lies {3} from the diagonal of a normal distribution.",
      {plot.variable, translatedCount(plot.points.size(), "{1} point", "{1} points"), shortNumber(farthest)});
}

std::string summaryOf(const ScatterMatrix& matrix) {
  const std::size_t cases = matrix.values.empty() ? 0 : matrix.values.front().size();
  return translatedCount(matrix.variables.size(), "Each pair of {1} variable, {2}.",
                         "Each pair of {1} variables, {2}.",
                         {translatedCount(cases, "{1} case", "{1} cases")});
}

std::string summaryOf(const VerdictMap& map) {
  std::array<std::size_t, 4> counts{};
  for (const auto& row : map.verdicts) {
    for (const common::Verdict verdict : row) {
      ++counts.at(static_cast<std::size_t>(verdict));
    }
  }
  return translated("{1} by {2}: {3} passed, {4}, {5} failed.",
                    {translatedCount(map.samples.size(), "{1} sample", "{1} samples"),
                     translatedCount(map.checks.size(), "{1} check", "{1} checks"), std::to_string(counts[1]),
                     translatedCount(counts[2], "{1} warning", "{1} warnings"), std::to_string(counts[3])});
}

std::optional<PivotTable> tableOf(const Histogram& histogram) {
  PivotTable table;
  table.rowLabel = histogram.variable;
  table.columns = {{translated("Frequency"), {}}};
  for (std::size_t bin = 0; bin < histogram.counts.size(); ++bin) {
    table.rows.push_back({binName(histogram, bin), {}});
    table.cells.push_back({numberCell(static_cast<double>(histogram.counts[bin]), 0)});
  }
  return table;
}

std::optional<PivotTable> tableOf(const VerdictMap& map) {
  PivotTable table;
  table.rowLabel = translated("Sample");
  for (const std::string& check : map.checks) {
    table.columns.push_back({check, {}});
  }
  for (std::size_t i = 0; i < map.samples.size(); ++i) {
    table.rows.push_back({map.samples[i], {}});
    std::vector<CellValue>& row = table.cells.emplace_back();
    for (const common::Verdict verdict : map.verdicts[i]) {
      row.push_back(textCell(translated(common::verdictWord(verdict))));
    }
  }
  return table;
}

template <typename Points>
std::optional<PivotTable> tableOf(const Points&) {
  return std::nullopt;
}

}  // namespace

std::string summarizeChart(const Chart& chart) {
  return std::visit([](const auto& data) { return summaryOf(data); }, chart.data);
}

std::optional<PivotTable> chartAsTable(const Chart& chart) {
  return std::visit([](const auto& data) { return tableOf(data); }, chart.data);
}

}  // namespace genostat::standalone
