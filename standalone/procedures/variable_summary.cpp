#include "standalone/procedures/variable_summary.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <span>
#include <string_view>

#include "standalone/output/number_format.h"
#include "standalone/statistics/value_counts.h"

namespace genostat::standalone {

namespace {

std::string inFull(double value) {
  std::array<char, 40> buffer{};
  return {buffer.data(), std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr};
}

std::optional<double> variationOf(const Moments& moments) {
  if (!moments.standardDeviation || !moments.mean || *moments.mean == 0) return std::nullopt;
  const double variation = 100 * (*moments.standardDeviation / *moments.mean);
  return std::isfinite(variation) ? std::optional<double>(variation) : std::nullopt;
}

void fillStatistics(VariableSummary& summary, std::span<const double> sorted,
                    std::span<const ValueCount<double>> counts) {
  VariableStatistics& statistics = summary.statistics;
  static_cast<Moments&>(statistics) = computeMoments(sorted);
  statistics.variation = variationOf(statistics);
  if (sorted.empty()) return;
  statistics.median = quantile(sorted, shareOfPercent(50));
  const Mode<double> mode = findMode(counts);
  statistics.mode = mode.value;
  summary.severalModes = !mode.unique;
}

void summarizeNumbers(VariableSummary& summary, const FrequenciesRequest& request) {
  const Column& variable = *summary.variable;
  const std::vector<double> sorted = sortedValues(variable.numbers);
  const auto counts = countValues(std::span(sorted));
  summary.validCount = sorted.size();
  summary.distinctCount = counts.size();
  fillStatistics(summary, sorted, counts);
  for (const Share& share : request.percentiles) {
    summary.percentiles.push_back(sorted.empty() ? std::nullopt
                                                 : std::optional<double>(quantile(sorted, share)));
  }
  if (request.histograms) summary.bins = binValues(sorted, variable.decimals);
  if (!request.tables || counts.size() > request.mostRows) return;
  std::vector<double> values;
  values.reserve(counts.size());
  for (const ValueCount<double>& count : counts) {
    values.push_back(count.value);
  }
  const std::vector<std::string> labels = distinctLabels(values, variable.decimals);
  for (std::size_t i = 0; i < counts.size(); ++i) {
    summary.values.push_back({labels[i], counts[i].count});
  }
}

void summarizeTexts(VariableSummary& summary, const FrequenciesRequest& request) {
  std::vector<std::string_view> sorted;
  for (const std::string& text : summary.variable->texts) {
    if (!text.empty()) sorted.emplace_back(text);
  }
  summary.validCount = sorted.size();
  summary.percentiles.resize(request.percentiles.size());
  if (!request.tables) return;
  std::ranges::sort(sorted);
  const auto counts = countValues(std::span<const std::string_view>(sorted));
  summary.distinctCount = counts.size();
  if (counts.size() > request.mostRows) return;
  for (const ValueCount<std::string_view>& count : counts) {
    summary.values.push_back({std::string(count.value), count.count});
  }
}

}  // namespace

std::vector<std::string> distinctLabels(const std::vector<double>& ascending, int decimals) {
  std::vector<std::string> labels;
  labels.reserve(ascending.size());
  for (const double value : ascending) {
    labels.push_back(formatNumber(value, {decimals, true}));
  }
  for (std::size_t begin = 0; begin < labels.size();) {
    std::size_t end = begin + 1;
    while (end < labels.size() && labels[end] == labels[begin]) {
      ++end;
    }
    for (std::size_t i = begin; end - begin > 1 && i < end; ++i) {
      labels[i] = inFull(ascending[i]);
    }
    begin = end;
  }
  return labels;
}

VariableSummary summarizeVariable(const Column& variable, const FrequenciesRequest& request) {
  VariableSummary summary;
  summary.variable = &variable;
  if (variable.type == Column::Type::Numeric) {
    summarizeNumbers(summary, request);
    summary.missingCount = variable.numbers.size() - summary.validCount;
  } else {
    summarizeTexts(summary, request);
    summary.missingCount = variable.texts.size() - summary.validCount;
  }
  return summary;
}

}  // namespace genostat::standalone
