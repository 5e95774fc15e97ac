// The normal equations in correlation form, in 34 digits. Forming cross-products squares the
// condition of the problem; they come with some 30 digits, so that even a problem that leaves
// nothing to double precision (condition 1e10) keeps ten digits more than it can lose.
//
// With R the correlations, S the predictors in the model and T all others, one Cholesky
// factorization of R_SS gives everything: its inverse A has the predictors' variance inflation on its
// diagonal, and the Schur complement C = R_TT - R_TS A R_ST holds what the model leaves of the
// others: C_jj is the tolerance of candidate j, C_yy is 1 - R², C_jy / √(C_jj C_yy) the partial
// correlation, C_jy / C_jj the coefficient Beta that the candidate would get. Were j to enter, the
// inverse's diagonal would grow by g² / C_jj with g = A R_Sj (block inversion), which gives the
// smallest tolerance beforehand. Source: G. A. F. Seber, A. J. Lee, "Linear Regression Analysis",
// 2nd edition (Wiley 2003), chapters 3, 4 and 11; A.3 for the inverse of a block matrix.

#include "standalone/statistics/linear_system.h"

#include <Eigen/Cholesky>
#include <Eigen/Core>
#include <algorithm>
#include <boost/math/distributions/fisher_f.hpp>
#include <boost/math/distributions/normal.hpp>
#include <boost/math/distributions/students_t.hpp>
#include <cmath>
#include <iterator>
#include <utility>

#include "standalone/statistics/quad.h"

namespace genostat::standalone {

namespace {

using Real = Quad;
using RealMatrix = Eigen::Matrix<Real, Eigen::Dynamic, Eigen::Dynamic>;
using RealVector = Eigen::Matrix<Real, Eigen::Dynamic, 1>;

// A residual below some fifty units in the last place of the dependent's spread is rounding of the data.
constexpr double kExactShare = 1e-28;
constexpr double kExactCoefficient = 1e-14;

Real toReal(const DoubleDouble& number) {
  return Real(number.high) + Real(number.low);
}

DoubleDouble toDoubleDouble(const Real& number) {
  const auto high = static_cast<double>(number);
  return {high, static_cast<double>(number - high)};
}

double toDouble(const Real& number) {
  return static_cast<double>(number);
}

Eigen::Index toIndex(std::size_t number) {
  return static_cast<Eigen::Index>(number);
}

double twoTailedSignificance(double t, std::size_t freedom) {
  if (std::isinf(t)) return 0;
  const boost::math::students_t distribution(static_cast<double>(freedom));
  return std::min(1.0, 2 * boost::math::cdf(boost::math::complement(distribution, std::abs(t))));
}

// `f` is a mean square over another one, not negative but for rounding.
FTest testOfF(double f, std::size_t freedom1, std::size_t freedom2) {
  if (std::isinf(f)) return {f, 0};
  const boost::math::fisher_f distribution(static_cast<double>(freedom1), static_cast<double>(freedom2));
  const double ratio = std::max(f, 0.0);
  return {ratio, boost::math::cdf(boost::math::complement(distribution, ratio))};
}

}  // namespace

struct LinearSystem::Contents {
  std::size_t dependent = 0;
  std::vector<std::size_t> candidates;
  std::size_t caseCount = 0;
  bool throughOrigin = false;
  RealVector means;
  RealVector squares;  // about the mean; through the origin about zero
  RealMatrix correlations;
  std::vector<bool> usable;
  std::vector<bool> outOfRange;

  void addTests(LinearFit& fit, const RealMatrix& inverse) const;
  void addCoefficients(LinearFit& fit, const RealVector& betas, const RealMatrix& inverse) const;
  void addExcluded(LinearFit& fit, const RealMatrix& solutions, const RealMatrix& inverse) const;
};

LinearSystem::LinearSystem(const CrossProducts& products, std::size_t dependent,
                           std::vector<std::size_t> candidates, bool throughOrigin) {
  const auto contents = std::make_shared<Contents>();
  contents_ = contents;
  Contents& my = *contents;
  my.dependent = dependent;
  my.candidates = std::move(candidates);
  my.caseCount = products.caseCount;
  my.throughOrigin = throughOrigin;
  const Eigen::Index k = toIndex(products.variableCount);
  my.means.resize(k);
  my.squares.resize(k);
  my.correlations = RealMatrix::Zero(k, k);
  for (Eigen::Index i = 0; i < k; ++i) {
    my.means(i) = toReal(products.means[static_cast<std::size_t>(i)]);
  }
  const Real n(static_cast<double>(products.caseCount));
  for (Eigen::Index i = 0; i < k; ++i) {
    for (Eigen::Index j = 0; j < k; ++j) {
      Real& sum = my.correlations(i, j);
      sum = toReal(products.sum(static_cast<std::size_t>(i), static_cast<std::size_t>(j)));
      if (throughOrigin) sum += n * my.means(i) * my.means(j);
    }
    my.squares(i) = my.correlations(i, i);
    const double squares = toDouble(my.squares(i));
    my.outOfRange.push_back(!std::isfinite(squares));
    my.usable.push_back(std::isfinite(squares) && squares > 0);
  }
  RealVector scales(k);
  for (Eigen::Index i = 0; i < k; ++i) {
    scales(i) = my.usable[static_cast<std::size_t>(i)] ? sqrt(my.squares(i)) : Real(1);
  }
  for (Eigen::Index i = 0; i < k; ++i) {
    for (Eigen::Index j = 0; j < k; ++j) {
      my.correlations(i, j) = i == j ? Real(1) : my.correlations(i, j) / scales(i) / scales(j);
    }
  }
}

std::size_t LinearSystem::caseCount() const {
  return contents_->caseCount;
}

bool LinearSystem::isConstant(std::size_t variable) const {
  return !contents_->usable[variable] && !contents_->outOfRange[variable];
}

bool LinearSystem::isOutOfRange(std::size_t variable) const {
  return contents_->outOfRange[variable];
}

std::optional<LinearFit> LinearSystem::fit(std::span<const std::size_t> predictors) const {
  const Contents& my = *contents_;
  const std::size_t p = predictors.size();
  const std::size_t constants = my.throughOrigin ? 0 : 1;
  if (my.caseCount < p + constants || my.caseCount == 0 || !my.usable[my.dependent]) return std::nullopt;
  for (const std::size_t predictor : predictors) {
    if (!my.usable[predictor]) return std::nullopt;
  }
  LinearFit fit;
  fit.predictors.assign(predictors.begin(), predictors.end());
  fit.totalFreedom = my.caseCount - constants;
  fit.residualFreedom = fit.totalFreedom - p;

  const std::vector<std::size_t>& inside = fit.predictors;
  RealMatrix inverse(0, 0);
  RealMatrix solutions =  // A R_ST, a column for each variable, those of S left empty
      RealMatrix::Zero(toIndex(p), my.correlations.cols());
  if (p > 0) {
    const Eigen::LLT<RealMatrix> decomposition(RealMatrix(my.correlations(inside, inside)));
    if (decomposition.info() != Eigen::Success) return std::nullopt;
    inverse = decomposition.solve(RealMatrix::Identity(toIndex(p), toIndex(p)));
    for (Eigen::Index i = 0; i < toIndex(p); ++i) {
      // Not a number when the factorization met rounding errors alone.
      if (!(inverse(i, i) > 0 && inverse(i, i) < 1 / Real(kSmallestTolerance))) return std::nullopt;
    }
    std::vector<std::size_t> outside = {my.dependent};
    std::ranges::copy_if(my.candidates, std::back_inserter(outside), [&](std::size_t candidate) {
      return std::ranges::find(inside, candidate) == inside.end();
    });
    const RealMatrix solved = decomposition.solve(RealMatrix(my.correlations(inside, outside)));
    solutions(Eigen::all, outside) = solved;
    const RealMatrix factor = decomposition.matrixL();
    for (Eigen::Index i = 0; i < toIndex(p); ++i) {
      for (Eigen::Index j = 0; j < toIndex(p); ++j) {
        fit.factor.push_back(toDouble(factor(i, j)));
      }
    }
  }
  const Eigen::Index y = toIndex(my.dependent);
  Real share = 1;
  for (std::size_t i = 0; i < p; ++i) {
    share -= my.correlations(toIndex(inside[i]), y) * solutions(toIndex(i), y);
  }
  fit.exact = fit.residualFreedom == 0 || share < kExactShare;
  if (fit.exact) share = 0;
  fit.residualShare = toDouble(share);
  fit.totalSquares = toDouble(my.squares(y));
  fit.residualSquares = toDouble(my.squares(y) * share);
  my.addTests(fit, inverse);
  my.addCoefficients(fit, solutions.col(y), inverse);
  my.addExcluded(fit, solutions, inverse);
  return fit;
}

void LinearSystem::Contents::addTests(LinearFit& fit, const RealMatrix& inverse) const {
  if (fit.residualFreedom == 0) return;
  const auto freedom = static_cast<double>(fit.residualFreedom);
  const auto p = static_cast<double>(inverse.rows());
  fit.adjustedRSquare = 1 - fit.residualShare * static_cast<double>(fit.totalFreedom) / freedom;
  fit.standardErrorEstimate = std::sqrt(fit.residualSquares / freedom);
  if (fit.exact || p == 0) return;
  const double ratio = (1 - fit.residualShare) / p / (fit.residualShare / freedom);
  fit.test = testOfF(ratio, fit.predictors.size(), fit.residualFreedom);
}

void LinearSystem::Contents::addCoefficients(LinearFit& fit, const RealVector& betas,
                                             const RealMatrix& inverse) const {
  const Eigen::Index y = toIndex(dependent);
  const Eigen::Index p = inverse.rows();
  const Real variance = fit.residualFreedom == 0
                            ? Real(0)
                            : fit.residualShare * squares(y) / static_cast<double>(fit.residualFreedom);
  // `share`: the value's part in explaining the dependent. In an exact fit one that is as small as the
  // rounding of the data counts as zero.
  const auto finish = [&](Coefficient& coefficient, const Real& value, const Real& share,
                          const Real& inverseDiagonal) {
    const bool vanishes = fit.exact && abs(share) < kExactCoefficient;
    coefficient.value = vanishes ? DoubleDouble() : toDoubleDouble(value);
    if (fit.residualFreedom == 0) return;
    const Real error = sqrt(variance * inverseDiagonal);
    coefficient.standardError = toDouble(error);
    if (fit.exact || error == 0) return;
    coefficient.t = toDouble(value / error);
    coefficient.significance = twoTailedSignificance(*coefficient.t, fit.residualFreedom);
  };
  Real constant = means(y);
  RealVector scaledMeans(p);
  for (Eigen::Index i = 0; i < p; ++i) {
    const Eigen::Index x = toIndex(fit.predictors[static_cast<std::size_t>(i)]);
    const Real value = betas(i) * sqrt(squares(y) / squares(x));
    Coefficient coefficient;
    finish(coefficient, value, betas(i), inverse(i, i) / squares(x));
    coefficient.beta = coefficient.value.high == 0 ? 0 : toDouble(betas(i));
    coefficient.tolerance = std::min(1.0, toDouble(1 / inverse(i, i)));
    fit.coefficients.push_back(coefficient);
    constant -= value * means(x);
    scaledMeans(i) = means(x) / sqrt(squares(x));
  }
  if (throughOrigin) return;
  const Real n(static_cast<double>(caseCount));
  const Real spread = p == 0 ? Real(0) : scaledMeans.dot(inverse * scaledMeans);
  const Real size = std::max(abs(means(y)), sqrt(squares(y) / n));
  finish(fit.constant.emplace(), constant, constant / size, 1 / n + spread);
}

void LinearSystem::Contents::addExcluded(LinearFit& fit, const RealMatrix& solutions,
                                         const RealMatrix& inverse) const {
  const Eigen::Index y = toIndex(dependent);
  const Real share(fit.residualShare);
  for (const std::size_t candidate : candidates) {
    if (std::ranges::find(fit.predictors, candidate) != fit.predictors.end()) continue;
    ExcludedCandidate& entry = fit.excluded.emplace_back();
    entry.variable = candidate;
    if (!usable[candidate]) continue;
    const Eigen::Index j = toIndex(candidate);
    Real tolerance = 1;
    Real covariance = correlations(j, y);
    for (Eigen::Index i = 0; i < inverse.rows(); ++i) {
      const Eigen::Index x = toIndex(fit.predictors[static_cast<std::size_t>(i)]);
      tolerance -= correlations(x, j) * solutions(i, j);
      covariance -= correlations(x, y) * solutions(i, j);
    }
    if (tolerance < kSmallestTolerance) continue;
    Real inflation = 1 / tolerance;
    for (Eigen::Index i = 0; i < inverse.rows(); ++i) {
      inflation = std::max(inflation, inverse(i, i) + solutions(i, j) * solutions(i, j) / tolerance);
    }
    entry.tolerance = std::min(1.0, toDouble(tolerance));
    entry.minimumTolerance = std::min(1.0, toDouble(1 / inflation));
    entry.beta = toDouble(covariance / tolerance);
    if (fit.exact) continue;
    const Real partial = covariance / sqrt(tolerance * share);
    entry.partialCorrelation = std::clamp(toDouble(partial), -1.0, 1.0);
    const Real rest = 1 - partial * partial;  // of the residual squares, were it in
    if (fit.residualFreedom < 2) continue;
    if (rest * share < kExactShare) {
      entry.significance = 0;
      continue;
    }
    const Real freedom(static_cast<double>(fit.residualFreedom - 1));
    entry.t = toDouble(partial * sqrt(freedom / rest));
    entry.significance = twoTailedSignificance(*entry.t, fit.residualFreedom - 1);
  }
}

std::optional<FTest> testOfChange(const LinearFit& before, const LinearFit& after) {
  const bool grown = after.predictors.size() > before.predictors.size();
  const LinearFit& larger = grown ? after : before;
  const LinearFit& smaller = grown ? before : after;
  const std::size_t predictors = larger.predictors.size() - smaller.predictors.size();
  if (predictors == 0 || larger.exact) return std::nullopt;
  const double explained = (smaller.residualShare - larger.residualShare) / static_cast<double>(predictors);
  const double left = larger.residualShare / static_cast<double>(larger.residualFreedom);
  return testOfF(explained / left, predictors, larger.residualFreedom);
}

double confidenceFactor(double level, std::size_t freedom) {
  const boost::math::students_t distribution(static_cast<double>(freedom));
  return boost::math::quantile(boost::math::complement(distribution, (1 - level) / 2));
}

double normalProbability(double z) {
  return boost::math::cdf(boost::math::normal(), z);
}

}  // namespace genostat::standalone
