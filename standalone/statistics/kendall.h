// Kendall's tau-b of two variables.
#pragma once

#include <vector>

#include "standalone/statistics/correlation_matrix.h"
#include "standalone/statistics/ranked_variable.h"

namespace genostat::standalone {

// Over the cases marked in `included` [case], in which neither variable is missing. With S the number
// of concordant less the number of discordant pairs, n0 = n(n-1)/2, and n1, n2 the pairs tied in x, in y:
//   tau-b = S / √((n0 - n1)(n0 - n2)).
// Significance by the normal approximation z = S / √v without correction for continuity, for any n:
//   v = (v0 - vt - vu) / 18 + v1 + v2, v0 = n(n-1)(2n+5), over groups of t values tied in x, u in y:
//   vt = Σ t(t-1)(2t+5), vu likewise, v1 = Σ t(t-1) Σ u(u-1) / (2n(n-1)),
//   v2 = Σ t(t-1)(t-2) Σ u(u-1)(u-2) / (9n(n-1)(n-2)).
// Source: M. G. Kendall, "Rank Correlation Methods", 4th edition, London 1970, chapters 3 and 4.
// Time n log n.
Correlation kendallTauB(const RankedVariable& x, const RankedVariable& y, const std::vector<bool>& included);

}  // namespace genostat::standalone
