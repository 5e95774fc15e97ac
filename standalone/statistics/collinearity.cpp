// The eigenvalues of X'X are the squared singular values of X, and X has those of the triangular
// factor R of its QR decomposition. R is at hand without another decomposition: with the constant as
// first column it is [√n, √n m'; 0, L'], m the means and L the Cholesky factor of the cross-products of
// deviations. Singular values of R keep the digits that eigenvalues of X'X would lose.

#include "standalone/statistics/collinearity.h"

#include <Eigen/SVD>
#include <cmath>

namespace genostat::standalone {

namespace {

// Columns of unit length that have the singular values of the scaled design matrix.
Eigen::MatrixXd scaledFactor(const CrossProducts& products, const LinearFit& fit) {
  const std::size_t p = fit.predictors.size();
  const Eigen::Index first = fit.constant ? 1 : 0;
  const auto size = static_cast<Eigen::Index>(p) + first;
  Eigen::MatrixXd factor = Eigen::MatrixXd::Zero(size, size);
  if (first == 1) factor(0, 0) = 1;
  for (std::size_t j = 0; j < p; ++j) {
    const std::size_t variable = fit.predictors[j];
    const double mean = products.means[variable].value();
    const auto n = static_cast<double>(products.caseCount);
    // Of a length of 1; through the origin it is the whole column.
    const double spread = std::sqrt(products.sum(variable, variable).value());
    const double offset = std::sqrt(n) * mean;
    const double length = std::hypot(spread, offset);
    const Eigen::Index column = static_cast<Eigen::Index>(j) + first;
    if (first == 1) factor(0, column) = offset / length;
    const double share = first == 1 ? spread / length : 1;
    for (std::size_t i = 0; i <= j; ++i) {
      factor(static_cast<Eigen::Index>(i) + first, column) = fit.factor[j * p + i] * share;
    }
  }
  return factor;
}

}  // namespace

std::vector<CollinearityDimension> computeCollinearity(const CrossProducts& products, const LinearFit& fit) {
  const Eigen::MatrixXd factor = scaledFactor(products, fit);
  if (factor.size() == 0) return {};
  const Eigen::JacobiSVD<Eigen::MatrixXd> decomposition(factor, Eigen::ComputeFullV);
  // Rounding may leave none of the smallest one, in a column that hardly differs from the constant.
  constexpr double kSmallestShare = 1e-17;
  const double largest = decomposition.singularValues()(0);
  const Eigen::ArrayXd singular = decomposition.singularValues().array().max(kSmallestShare * largest);
  // The variance of coefficient k is σ² Σ_j v_kj² / s_j².
  const Eigen::ArrayXXd parts = (decomposition.matrixV().array().rowwise() / singular.transpose()).square();
  const Eigen::ArrayXd variances = parts.rowwise().sum();
  std::vector<CollinearityDimension> dimensions;
  for (Eigen::Index j = 0; j < singular.size(); ++j) {
    CollinearityDimension& dimension = dimensions.emplace_back();
    dimension.eigenvalue = singular(j) * singular(j);
    dimension.conditionIndex = singular(0) / singular(j);
    for (Eigen::Index k = 0; k < singular.size(); ++k) {
      dimension.varianceProportions.push_back(parts(k, j) / variances(k));
    }
  }
  return dimensions;
}

}  // namespace genostat::standalone
