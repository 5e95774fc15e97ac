#include "analysis/metrics/verdict.h"

namespace genostat::analysis {

double Verdicts::score() const {
  double points = 0;
  int given = 0;
  for (const Verdict verdict : verdicts_) {
    if (verdict == Verdict::None) continue;
    ++given;
    if (verdict == Verdict::Pass) points += 1;
    if (verdict == Verdict::Warn) points += 0.5;
  }
  return given == 0 ? 0 : 100 * points / given;
}

}  // namespace genostat::analysis
