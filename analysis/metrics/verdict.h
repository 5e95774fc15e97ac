// The verdicts on a sample.
#pragma once

#include <array>
#include <cstddef>

#include "common/quality/checks.h"

namespace genostat::analysis {

using common::Check;
using common::Verdict;

class Verdicts {
 public:
  Verdict& operator[](Check check) { return verdicts_[static_cast<std::size_t>(check)]; }
  Verdict operator[](Check check) const { return verdicts_[static_cast<std::size_t>(check)]; }

  // 100 (passes + half the warnings) / verdicts given; 0 when none is given.
  double score() const {
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

 private:
  std::array<Verdict, common::kChecks.size()> verdicts_{};
};

// For measures that are bad when large. Not-a-number passes.
constexpr Verdict judgeAbove(double value, double warn, double fail) {
  if (value > fail) return Verdict::Fail;
  return value > warn ? Verdict::Warn : Verdict::Pass;
}
// For measures that are bad when small.
constexpr Verdict judgeBelow(double value, double warn, double fail) {
  return judgeAbove(-value, -warn, -fail);
}

}  // namespace genostat::analysis
