// The statistics of single variables that several procedures show.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "standalone/data/dataset.h"
#include "standalone/language/translation.h"
#include "standalone/output/pivot_table.h"
#include "standalone/statistics/moments.h"
#include "standalone/statistics/pair_groups.h"
#include "standalone/syntax/token_cursor.h"

namespace genostat::standalone {

// Empty members do not exist for the data.
struct VariableStatistics : Moments {
  std::optional<double> median;
  std::optional<double> mode;       // the smallest of several
  std::optional<double> variation;  // 100 s / m, with the mean's sign
};

// One that a command can ask for.
struct Statistic {
  using Value = std::optional<double> VariableStatistics::*;

  std::string_view keyword;
  std::string_view label;
  Value value;
  int extraDecimals;        // beyond the variable's own
  bool ownDecimals = true;  // false: decimals do not depend on the variable
  Value error = nullptr;    // its standard error, for tables that show that beside it

  CellValue cell(const Column& variable, const std::optional<double>& number) const;
};

inline constexpr Statistic kMean = {"MEAN", marked("Mean"), &VariableStatistics::mean, 2};
inline constexpr Statistic kMeanError = {"SEMEAN", marked("Std. Error of Mean"),
                                         &VariableStatistics::meanError, 3};
inline constexpr Statistic kMedian = {"MEDIAN", marked("Median"), &VariableStatistics::median, 2};
inline constexpr Statistic kMode = {"MODE", marked("Mode"), &VariableStatistics::mode, 0};
inline constexpr Statistic kDeviation = {"STDDEV", marked("Std. Deviation"),
                                         &VariableStatistics::standardDeviation, 3};
inline constexpr Statistic kVariation = {"CV", marked("Coefficient of Variation (%)"),
                                         &VariableStatistics::variation, 3, false};
inline constexpr Statistic kVariance = {"VARIANCE", marked("Variance"), &VariableStatistics::variance, 3};
inline constexpr Statistic kSkewness = {"SKEWNESS",
                                        marked("Skewness"),
                                        &VariableStatistics::skewness,
                                        3,
                                        false,
                                        &VariableStatistics::skewnessError};
inline constexpr Statistic kSkewnessError = {"SESKEW", marked("Std. Error of Skewness"),
                                             &VariableStatistics::skewnessError, 3, false};
inline constexpr Statistic kKurtosis = {"KURTOSIS",
                                        marked("Kurtosis"),
                                        &VariableStatistics::kurtosis,
                                        3,
                                        false,
                                        &VariableStatistics::kurtosisError};
inline constexpr Statistic kKurtosisError = {"SEKURT", marked("Std. Error of Kurtosis"),
                                             &VariableStatistics::kurtosisError, 3, false};
inline constexpr Statistic kRange = {"RANGE", marked("Range"), &VariableStatistics::range, 0};
inline constexpr Statistic kMinimum = {"MINIMUM", marked("Minimum"), &VariableStatistics::minimum, 0};
inline constexpr Statistic kMaximum = {"MAXIMUM", marked("Maximum"), &VariableStatistics::maximum, 0};
inline constexpr Statistic kSum = {"SUM", marked("Sum"), &VariableStatistics::sum, 0};

// Mean, deviation, minimum and maximum, in the order of `offered`.
std::vector<Statistic> usualStatistics(std::span<const Statistic> offered);

// Those that the subcommand's words name, in the order of `offered`; without a word the usual ones. NONE is a
// word only where a command may do without statistics. Throws CommandError.
std::vector<Statistic> parseStatistics(TokenCursor& cursor, std::span<const Statistic> offered,
                                       bool mayBeNone);

// [case]: none of the numeric variables is missing.
std::vector<bool> completeCases(const std::vector<const Column*>& variables, std::size_t caseCount);

// [variable]: over all its values, listwise over those of the complete cases.
std::vector<Moments> momentsOf(const std::vector<const Column*>& variables, Deletion deletion,
                               MomentDetail detail);

}  // namespace genostat::standalone
