// Correlations of every variable with every other one.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "standalone/statistics/cross_products.h"
#include "standalone/statistics/pair_groups.h"

namespace genostat::standalone {

// What is known of two variables over the cases that count for them.
struct Correlation {
  // Why there is no coefficient.
  enum class Obstacle { None, TooFewCases, Constant, BeyondRange };

  std::size_t caseCount = 0;
  std::optional<double> coefficient;  // -1 to 1; exactly 1 of a variable with itself
  Obstacle obstacle = Obstacle::None;
  // One-tailed significance, in the direction of the coefficient. None without a coefficient, of a
  // variable with itself, and where the cases leave no degree of freedom.
  std::optional<double> oneTailed;
  // Pearson's only: Σ(x - mx)(y - my), and that divided by n - 1. None for too few cases and beyond
  // the range of numbers.
  std::optional<double> crossProduct;
  std::optional<double> covariance;

  std::optional<double> twoTailed() const;
};

class CorrelationMatrix {
 public:
  explicit CorrelationMatrix(std::size_t variableCount)
      : variableCount_(variableCount), correlations_(variableCount * variableCount) {}

  const Correlation& at(std::size_t row, std::size_t column) const {
    return correlations_[row * variableCount_ + column];
  }
  // For both orders of the two variables.
  void set(std::size_t one, std::size_t other, const Correlation& correlation);

 private:
  std::size_t variableCount_;
  std::vector<Correlation> correlations_;
};

// Pearson's r = Sxy / √(Sxx Syy), from cross-products of about 28 digits; its significance by
// Student's t with n - 2 degrees of freedom. Values of any size: those far from 1 are scaled before they are
// multiplied.
CorrelationMatrix pearsonMatrix(VariableSpans variables, Deletion deletion);

// Pearson's r of two of the variables that were summed, without cross-product and covariance.
Correlation correlationOf(const CrossProducts& products, std::size_t one, std::size_t other);

}  // namespace genostat::standalone
