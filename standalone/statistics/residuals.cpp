// Residuals are computed in double-double arithmetic: where predictors are nearly collinear, large
// terms cancel. The leverage of a case, h = 1/n + d' C⁻¹ d with d its deviations and C their
// cross-products, is the squared length of L⁻¹d for the Cholesky factor L of C: a triangular solve
// for each case. Source: G. A. F. Seber, A. J. Lee, "Linear Regression Analysis", 2nd edition
// (Wiley 2003), 10.2.

#include "standalone/statistics/residuals.h"

#include <algorithm>
#include <cmath>

namespace genostat::standalone {

namespace {

// Leverages nearer to 1 than this differ from it by rounding.
constexpr double kFullLeverage = 1e-10;
// A mean smaller than this share of the deviation is what rounding leaves of zero.
constexpr double kVanishingMean = 1e-12;

// Of values around a centre that is near their mean.
class SpreadSum {
 public:
  explicit SpreadSum(double centre) : centre_(centre) {}

  void add(double value) {
    minimum_ = count_ == 0 ? value : std::min(minimum_, value);
    maximum_ = count_ == 0 ? value : std::max(maximum_, value);
    const double deviation = value - centre_;
    sum_ = sum_ + DoubleDouble{deviation, 0};
    squares_ = squares_ + exactProduct(deviation, deviation);
    ++count_;
  }

  Spread spread() const {
    const auto n = static_cast<double>(count_);
    Spread result{minimum_, maximum_, centre_, std::nullopt};
    if (count_ == 0) return result;
    const DoubleDouble shift = sum_ / n;
    const double squares = std::max(0.0, (squares_ - sum_ * shift).value());
    result.mean = centre_ + shift.value();
    if (count_ < 2) return result;
    result.deviation = std::sqrt(squares / (n - 1));
    if (std::abs(result.mean) < kVanishingMean * *result.deviation) result.mean = 0;
    return result;
  }

 private:
  double centre_;
  std::size_t count_ = 0;
  double minimum_ = 0;
  double maximum_ = 0;
  DoubleDouble sum_;
  DoubleDouble squares_;
};

Spread rescaledSpread(const Spread& spread, double centre, double unit) {
  Spread result{(spread.minimum - centre) / unit, (spread.maximum - centre) / unit,
                (spread.mean - centre) / unit, std::nullopt};
  if (spread.deviation) result.deviation = *spread.deviation / unit;
  return result;
}

// The residual and the leverage of one case after another.
class CaseFit {
 public:
  CaseFit(const CrossProducts& products, std::size_t dependent, const LinearFit& fit)
      : fit_(fit), dependent_(dependent), scaled_(fit.predictors.size()) {
    const auto n = static_cast<double>(products.caseCount);
    if (fit.constant) {
      ownLeverage_ = 1 / n;
      centres_ = products.means;
    } else {
      centres_.resize(products.variableCount);
    }
    for (const std::size_t predictor : fit.predictors) {
      const DoubleDouble& mean = products.means[predictor];
      const DoubleDouble about = products.sum(predictor, predictor);
      const DoubleDouble squares = fit.constant ? about : about + mean * mean * DoubleDouble{n, 0};
      lengths_.push_back(std::sqrt(squares.value()));
    }
  }

  struct Result {
    double residual;
    double leverage;
  };

  Result at(std::span<const std::span<const double>> variables, std::size_t i) {
    DoubleDouble residual = deviation(variables, dependent_, i);
    double leverage = ownLeverage_;
    const std::size_t p = fit_.predictors.size();
    for (std::size_t j = 0; j < p; ++j) {
      const DoubleDouble x = deviation(variables, fit_.predictors[j], i);
      residual = residual - fit_.coefficients[j].value * x;
      double rest = x.value() / lengths_[j];
      for (std::size_t k = 0; k < j; ++k) {
        rest -= fit_.factor[j * p + k] * scaled_[k];
      }
      scaled_[j] = rest / fit_.factor[j * p + j];
      leverage += scaled_[j] * scaled_[j];
    }
    return {fit_.exact ? 0 : residual.value(), leverage};
  }

 private:
  DoubleDouble deviation(std::span<const std::span<const double>> variables, std::size_t variable,
                         std::size_t i) const {
    return DoubleDouble{variables[variable][i], 0} - centres_[variable];
  }

  const LinearFit& fit_;
  std::size_t dependent_;
  double ownLeverage_ = 0;
  std::vector<DoubleDouble> centres_;  // [variable]
  std::vector<double> lengths_;        // [predictor]
  std::vector<double> scaled_;         // [predictor] L⁻¹d of the case
};

}  // namespace

ResidualSummary summarizeResiduals(std::span<const std::span<const double>> variables,
                                   const CrossProducts& products, std::size_t dependent, const LinearFit& fit,
                                   bool keepStandardized) {
  const double error = fit.standardErrorEstimate.value_or(0);
  const bool standardizable = error > 0;
  CaseFit caseFit(products, dependent, fit);
  SpreadSum predicted(products.means[dependent].value());
  SpreadSum residuals(0);
  DoubleDouble press;
  bool determined = true;
  ResidualSummary summary;
  const std::size_t cases = variables[dependent].size();
  for (std::size_t i = 0; i < cases; ++i) {
    const bool complete = std::ranges::none_of(
        variables, [i](std::span<const double> variable) { return std::isnan(variable[i]); });
    if (!complete) continue;
    const CaseFit::Result result = caseFit.at(variables, i);
    // A constant alone predicts the mean, without the rounding of a difference.
    const bool constantAlone = fit.constant && fit.predictors.empty();
    predicted.add(constantAlone ? products.means[dependent].value()
                                : variables[dependent][i] - result.residual);
    residuals.add(result.residual);
    if (1 - result.leverage <= kFullLeverage) {
      determined = false;
    } else {
      const double deleted = result.residual / (1 - result.leverage);
      press = press + exactProduct(deleted, deleted);
    }
    if (keepStandardized && standardizable) summary.standardized.push_back(result.residual / error);
  }
  summary.predicted = predicted.spread();
  summary.residual = residuals.spread();
  if (summary.predicted.deviation && *summary.predicted.deviation > 0) {
    summary.standardizedPredicted =
        rescaledSpread(summary.predicted, summary.predicted.mean, *summary.predicted.deviation);
  }
  if (standardizable) summary.standardizedResidual = rescaledSpread(summary.residual, 0, error);
  if (determined) summary.press = press.value();
  return summary;
}

}  // namespace genostat::standalone
