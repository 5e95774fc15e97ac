// Correlations of ranks of every variable with every other one.
#pragma once

#include <vector>

#include "standalone/statistics/correlation_matrix.h"
#include "standalone/statistics/ranked_variable.h"

namespace genostat::standalone {

// Spearman's and Kendall's coefficients of the same variables, which are sorted once for both.
class RankCorrelation {
 public:
  // The values that the spans show must outlive this.
  RankCorrelation(VariableSpans variables, Deletion deletion);

  // Spearman's rho: Pearson's r of the mid-ranks among the cases of each pair, in which numbers are
  // exact; significance as of Pearson's r. Source: M. G. Kendall, "Rank Correlation Methods", 4th edition,
  // London 1970, chapter 3 (ties) and 5.
  CorrelationMatrix spearman() const;

  // By kendallTauB; exactly 1, without significance, of a variable with itself.
  CorrelationMatrix kendall() const;

 private:
  std::vector<bool> casesOf(const PairGroup& group) const;

  std::vector<std::span<const double>> variables_;
  std::vector<PairGroup> groups_;
  std::vector<RankedVariable> ranked_;
};

}  // namespace genostat::standalone
