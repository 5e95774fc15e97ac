#include "standalone/statistics/correlation_matrix.h"

#include <algorithm>
#include <boost/math/distributions/students_t.hpp>
#include <cmath>

namespace genostat::standalone {

namespace {

// Squares of numbers between 2^-400 and 2^400, and sums of them, are far from the ends of double's range.
constexpr int kSafeExponent = 400;

// The power of two that brings a variable's deviations to where their products are safe, 0 for most.
int scaleExponent(std::span<const double> values) {
  double least = 0;
  double greatest = 0;
  bool found = false;
  for (const double value : values) {
    if (std::isnan(value)) continue;
    least = found ? std::min(least, value) : value;
    greatest = found ? std::max(greatest, value) : value;
    found = true;
  }
  const double size = std::max(std::abs(least), std::abs(greatest));
  if (!std::isfinite(size) || least == greatest) return 0;
  // Of a spread this small no value is larger than 2^53 times it.
  const double spread = greatest / 2 - least / 2;
  if (std::ilogb(size) > kSafeExponent) return -std::ilogb(size);
  return spread > 0 && std::ilogb(spread) < -kSafeExponent ? -std::ilogb(spread) : 0;
}

// Variables as they are, or copies scaled by powers of two, which rounds nothing.
class ScaledVariables {
 public:
  explicit ScaledVariables(VariableSpans variables) {
    scaled_.reserve(variables.size());
    for (const std::span<const double> variable : variables) {
      const int exponent = scaleExponent(variable);
      exponents_.push_back(exponent);
      spans_.push_back(variable);
      if (exponent == 0) continue;
      std::vector<double>& values = scaled_.emplace_back(variable.begin(), variable.end());
      for (double& value : values) {
        value = std::ldexp(value, exponent);
      }
      spans_.back() = values;
    }
  }

  std::vector<std::span<const double>> select(const std::vector<std::size_t>& numbers) const {
    std::vector<std::span<const double>> selected;
    selected.reserve(numbers.size());
    for (const std::size_t number : numbers) {
      selected.push_back(spans_[number]);
    }
    return selected;
  }

  // The product of two variables' deviations as it was before scaling.
  double unscaled(double product, std::size_t one, std::size_t other) const {
    return std::ldexp(product, -(exponents_[one] + exponents_[other]));
  }

 private:
  std::vector<std::vector<double>> scaled_;
  std::vector<std::span<const double>> spans_;
  std::vector<int> exponents_;
};

DoubleDouble scaleBy(const DoubleDouble& number, int exponent) {
  return {std::ldexp(number.high, exponent), std::ldexp(number.low, exponent)};
}

// An even exponent, so that its half scales a factor of the square.
int evenExponent(double number) {
  return std::ilogb(number) / 2 * 2;
}

// P(T >= |t|) with t = r √((n-2) / (1-r²)), at least three cases. `unexplained` is 1 - r², in more digits
// than r has.
double correlationTail(double coefficient, double unexplained, std::size_t caseCount) {
  if (unexplained <= 0) return 0;
  const auto freedom = static_cast<double>(caseCount - 2);
  const double t = std::abs(coefficient) * std::sqrt(freedom / unexplained);
  return boost::math::cdf(boost::math::complement(boost::math::students_t(freedom), t));
}

std::optional<double> finiteOrNone(double value) {
  return std::isfinite(value) ? std::optional<double>(value) : std::nullopt;
}

}  // namespace

std::optional<double> Correlation::twoTailed() const {
  if (!oneTailed) return std::nullopt;
  return std::min(1.0, 2 * *oneTailed);
}

void CorrelationMatrix::set(std::size_t one, std::size_t other, const Correlation& correlation) {
  correlations_[one * variableCount_ + other] = correlation;
  correlations_[other * variableCount_ + one] = correlation;
}

Correlation correlationOf(const CrossProducts& products, std::size_t one, std::size_t other) {
  Correlation result;
  result.caseCount = products.caseCount;
  if (products.caseCount < 2) {
    result.obstacle = Correlation::Obstacle::TooFewCases;
    return result;
  }
  const DoubleDouble& sumOne = products.sum(one, one);
  const DoubleDouble& sumOther = products.sum(other, other);
  if (!std::isfinite(sumOne.value()) || !std::isfinite(sumOther.value())) {
    result.obstacle = Correlation::Obstacle::BeyondRange;
    return result;
  }
  if (sumOne.value() <= 0 || sumOther.value() <= 0) {
    result.obstacle = Correlation::Obstacle::Constant;
    return result;
  }
  if (one == other) {
    result.coefficient = 1;
    return result;
  }
  const int exponentOne = evenExponent(sumOne.high);
  const int exponentOther = evenExponent(sumOther.high);
  const DoubleDouble squares = scaleBy(sumOne, -exponentOne) * scaleBy(sumOther, -exponentOther);
  const DoubleDouble product = scaleBy(products.sum(one, other), -(exponentOne + exponentOther) / 2);
  result.coefficient = std::clamp(product.value() / std::sqrt(squares.value()), -1.0, 1.0);
  const double unexplained = (squares - product * product).value() / squares.value();
  if (products.caseCount > 2) {
    result.oneTailed = correlationTail(*result.coefficient, unexplained, products.caseCount);
  }
  return result;
}

CorrelationMatrix pearsonMatrix(VariableSpans variables, Deletion deletion) {
  const ScaledVariables scaled(variables);
  CorrelationMatrix matrix(variables.size());
  for (const PairGroup& group : groupPairs(variables, deletion)) {
    const CrossProducts products = computeCrossProducts(scaled.select(group.variables));
    for (const auto& [i, j] : group.pairs) {
      const std::size_t one = group.variables[i];
      const std::size_t other = group.variables[j];
      Correlation correlation = correlationOf(products, i, j);
      if (products.caseCount >= 2) {
        const double product = scaled.unscaled(products.sum(i, j).value(), one, other);
        correlation.crossProduct = finiteOrNone(product);
        correlation.covariance = finiteOrNone(product / static_cast<double>(products.caseCount - 1));
      }
      matrix.set(one, other, correlation);
    }
  }
  return matrix;
}

}  // namespace genostat::standalone
