// Least squares from cross-products: what a linear regression needs to know about any set of
// predictors out of given candidates.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "standalone/statistics/cross_products.h"

namespace genostat::standalone {

// Empty members do not exist for the data: no degrees of freedom are left, or the fit is exact.
struct Coefficient {
  DoubleDouble value;                   // B, in more digits than a double has, for residuals
  std::optional<double> beta;           // for variables of unit variance; not of the constant
  std::optional<double> standardError;  // 0 when the fit is exact
  std::optional<double> t;
  std::optional<double> significance;  // two-tailed
  std::optional<double> tolerance;     // 1 - R² of this predictor on the others; not of the constant
};

// A candidate outside of the model: what it would be as the next one in it.
struct ExcludedCandidate {
  std::size_t variable = 0;
  double tolerance = 0;
  // The smallest tolerance of all predictors that the model would have then; 0 for constants.
  double minimumTolerance = 0;
  std::optional<double> beta;
  std::optional<double> t;  // none, with a significance of 0, where the fit would become exact
  std::optional<double> significance;
  std::optional<double> partialCorrelation;
};

struct FTest {
  double f = 0;
  double significance = 0;
};

// The regression on one set of predictors. Sums of squares are about the mean; through the
// origin they are about zero, and there is no constant.
struct LinearFit {
  std::vector<std::size_t> predictors;  // numbers of variables, in the order asked for
  double totalSquares = 0;
  double residualSquares = 0;
  double residualShare = 1;  // residualSquares / totalSquares = 1 - R²
  std::size_t totalFreedom = 0;
  std::size_t residualFreedom = 0;
  // The residuals are zero as far as the data's digits can tell: no test exists.
  bool exact = false;
  std::optional<double> adjustedRSquare;        // 1 - (1 - R²) · total df / residual df
  std::optional<double> standardErrorEstimate;  // √(residualSquares / residualFreedom)
  std::optional<FTest> test;                    // of all coefficients but the constant
  std::optional<Coefficient> constant;          // none through the origin
  std::vector<Coefficient> coefficients;        // [predictor]
  std::vector<ExcludedCandidate> excluded;      // the other candidates, in their order
  // The lower Cholesky factor of the predictors' correlations, [row * predictors + column].
  std::vector<double> factor;
};

// One dependent variable and its candidate predictors. Immutable; may be shared by threads.
class LinearSystem {
 public:
  // Below this share of its variance a predictor counts as determined by the others, whatever
  // tolerance is asked for: what is left then is rounding of the cross-products.
  static constexpr double kSmallestTolerance = 1e-26;

  // `dependent` and `candidates` are numbers of variables of `products`.
  LinearSystem(const CrossProducts& products, std::size_t dependent, std::vector<std::size_t> candidates,
               bool throughOrigin = false);

  std::size_t caseCount() const;
  // No spread (through the origin: nothing but zeros); such a variable takes part in no fit.
  bool isConstant(std::size_t variable) const;
  // Sums beyond double's range; such a variable takes part in no fit.
  bool isOutOfRange(std::size_t variable) const;

  // None when the predictors determine one another or are more than the cases can bear, or a
  // variable takes part in no fit.
  std::optional<LinearFit> fit(std::span<const std::size_t> predictors) const;

 private:
  struct Contents;
  std::shared_ptr<const Contents> contents_;
};

// How much better the larger of two nested models fits: the F test of the predictors that only it
// has. None when it leaves no degrees of freedom, fits exactly, or the models are of one size.
std::optional<FTest> testOfChange(const LinearFit& before, const LinearFit& after);

// The half width of a confidence interval in standard errors: Student's t with `freedom` > 0 degrees,
// exceeded in either direction with probability 1 - level. `level` lies between 0 and 1.
double confidenceFactor(double level, std::size_t freedom);

// Probability of a value up to z under the standard normal distribution.
double normalProbability(double z);

}  // namespace genostat::standalone
