#include "standalone/output/chart_summary.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>

namespace genostat::standalone {

namespace {

constexpr int kUsualDigits = 6;

// So many significant digits at most.
std::string shortNumber(double value, int digits = kUsualDigits) {
  std::array<char, 40> buffer{};
  const auto result =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::general, digits);
  return std::string(buffer.data(), result.ptr);
}

std::string counted(std::size_t count, const std::string& noun) {
  return std::to_string(count) + ' ' + noun + (count == 1 ? "" : "s");
}

double edgeOf(const Histogram& histogram, std::size_t bin) {
  return histogram.firstEdge + static_cast<double>(bin) * histogram.binWidth;
}

// As many as tell one edge from the next, far from 0 too.
int digitsOfEdges(const Histogram& histogram) {
  constexpr int kMostDigits = 17;
  const double largest =
      std::max(std::abs(histogram.firstEdge), std::abs(edgeOf(histogram, histogram.counts.size())));
  const double digits = std::ceil(std::log10(largest / histogram.binWidth)) + 2;
  return digits > kUsualDigits ? static_cast<int>(std::min<double>(digits, kMostDigits)) : kUsualDigits;
}

std::string binName(const Histogram& histogram, std::size_t bin) {
  const int digits = digitsOfEdges(histogram);
  return shortNumber(edgeOf(histogram, bin), digits) + " to " +
         shortNumber(edgeOf(histogram, bin + 1), digits);
}

std::string summaryOf(const Histogram& histogram) {
  std::string text = counted(histogram.validCount, "value");
  if (histogram.mean) text += ", mean " + shortNumber(*histogram.mean);
  if (histogram.deviation) text += ", standard deviation " + shortNumber(*histogram.deviation);
  const auto tallest = std::max_element(histogram.counts.begin(), histogram.counts.end());
  if (tallest != histogram.counts.end()) {
    text += "; the tallest bar, " +
            binName(histogram, static_cast<std::size_t>(tallest - histogram.counts.begin())) + ", counts " +
            std::to_string(*tallest);
  }
  return text + '.';
}

std::string summaryOf(const ProbabilityPlot& plot) {
  double farthest = 0;
  for (const ProbabilityPlot::Point& point : plot.points) {
    const double distance = std::abs(point.observed - point.expected);
    if (distance > farthest) farthest = distance;
  }
  return plot.variable + ", " + counted(plot.points.size(), "point") + "; the farthest lies " +
         shortNumber(farthest) + " from the diagonal of a normal distribution.";
}

std::string summaryOf(const ScatterMatrix& matrix) {
  const std::size_t cases = matrix.values.empty() ? 0 : matrix.values.front().size();
  return "Each pair of " + counted(matrix.variables.size(), "variable") + ", " + counted(cases, "case") + '.';
}

std::string summaryOf(const VerdictMap& map) {
  std::array<std::size_t, 4> counts{};
  for (const auto& row : map.verdicts) {
    for (const VerdictMap::Verdict verdict : row) {
      ++counts.at(static_cast<std::size_t>(verdict));
    }
  }
  return counted(map.samples.size(), "sample") + " by " + counted(map.checks.size(), "check") + ": " +
         std::to_string(counts[1]) + " passed, " + counted(counts[2], "warning") + ", " +
         std::to_string(counts[3]) + " failed.";
}

std::optional<PivotTable> tableOf(const Histogram& histogram) {
  PivotTable table;
  table.rowLabel = histogram.variable;
  table.columns = {{"Frequency", {}}};
  for (std::size_t bin = 0; bin < histogram.counts.size(); ++bin) {
    table.rows.push_back({binName(histogram, bin), {}});
    table.cells.push_back({numberCell(static_cast<double>(histogram.counts[bin]), 0)});
  }
  return table;
}

std::optional<PivotTable> tableOf(const VerdictMap& map) {
  static constexpr std::array<const char*, 4> kWords = {"", "pass", "warn", "fail"};
  PivotTable table;
  table.rowLabel = "Sample";
  for (const std::string& check : map.checks) {
    table.columns.push_back({check, {}});
  }
  for (std::size_t i = 0; i < map.samples.size(); ++i) {
    table.rows.push_back({map.samples[i], {}});
    std::vector<CellValue>& row = table.cells.emplace_back();
    for (const VerdictMap::Verdict verdict : map.verdicts[i]) {
      row.push_back(textCell(kWords.at(static_cast<std::size_t>(verdict))));
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
