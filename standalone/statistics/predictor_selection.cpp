// Stepwise: M. A. Efroymson, "Multiple regression analysis", in A. Ralston, H. S. Wilf (editors),
// "Mathematical Methods for Digital Computers" 1 (Wiley 1960) 191-203. It ends because entering
// is stricter than staying: entering and leaving compare the same two models by the same F, so each
// return to a number of predictors comes with a smaller residual sum of squares.

#include "standalone/statistics/predictor_selection.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

namespace genostat::standalone {

namespace {

constexpr std::size_t kStepsPerVariable = 20;

using PredictorList = std::vector<std::size_t>;

bool isListed(const PredictorList& list, std::size_t variable) {
  return std::ranges::find(list, variable) != list.end();
}

double smallestTolerance(const LinearFit& fit) {
  double smallest = 1;
  for (const Coefficient& coefficient : fit.coefficients) {
    smallest = std::min(smallest, coefficient.tolerance.value_or(1));
  }
  return smallest;
}

class Selector {
 public:
  Selector(const LinearSystem& system, const SelectionCriteria& criteria)
      : system_(system), criteria_(criteria), current_(system.fit({})) {}

  void run(std::span<const SelectionBlock> blocks) {
    // Without cases or without a spread of the dependent there is nothing to explain.
    if (!current_) return;
    for (block_ = 0; block_ < blocks.size(); ++block_) {
      const SelectionBlock& block = blocks[block_];
      if (block.method == SelectionMethod::Enter || block.method == SelectionMethod::Backward) {
        enterAll(block.variables);
      } else {
        noteUnusable(block.variables);
      }
      if (block.method == SelectionMethod::Backward) {
        while (removeWorst(block.variables)) {
        }
      } else if (block.method != SelectionMethod::Enter) {
        const bool removing = block.method == SelectionMethod::Stepwise;
        // Criteria that lie together as close as rounding does must not keep it going for ever.
        const std::size_t mostSteps = selection_.steps.size() + kStepsPerVariable * block.variables.size();
        while (selection_.steps.size() < mostSteps && enterBest(block.variables)) {
          while (removing && removeWorst(block.variables)) {
          }
        }
      }
    }
  }

  Selection take() { return std::move(selection_); }

 private:
  void step(PredictorList entered, PredictorList removed, LinearFit fit) {
    current_ = fit;
    selection_.steps.push_back({block_, std::move(entered), std::move(removed), std::move(fit)});
  }

  void refuse(std::size_t variable, Refusal::Reason reason) {
    for (const Refusal& refusal : selection_.refusals) {
      if (refusal.variable == variable) return;
    }
    selection_.refusals.push_back({variable, reason});
  }

  bool refuseUnusable(std::size_t variable) {
    if (system_.isOutOfRange(variable)) {
      refuse(variable, Refusal::Reason::OutOfRange);
    } else if (system_.isConstant(variable)) {
      refuse(variable, Refusal::Reason::Constant);
    } else {
      return false;
    }
    return true;
  }

  void noteUnusable(const PredictorList& list) {
    for (const std::size_t variable : list) {
      refuseUnusable(variable);
    }
  }

  std::optional<LinearFit> tolerableFit(const PredictorList& predictors) const {
    std::optional<LinearFit> fit = system_.fit(predictors);
    if (fit && smallestTolerance(*fit) < criteria_.tolerance) fit.reset();
    return fit;
  }

  void enterAll(const PredictorList& list) {
    PredictorList wanted = current_->predictors;
    PredictorList entered;
    for (const std::size_t variable : list) {
      if (isListed(wanted, variable) || refuseUnusable(variable)) continue;
      wanted.push_back(variable);
      entered.push_back(variable);
    }
    if (entered.empty()) return;
    // Tolerances only fall as predictors come in: if all hold at the end, all held on the way.
    if (std::optional<LinearFit> fit = tolerableFit(wanted)) {
      step(std::move(entered), {}, std::move(*fit));
      return;
    }
    LinearFit fit = *current_;
    const PredictorList candidates = std::exchange(entered, {});
    for (const std::size_t variable : candidates) {
      PredictorList next = fit.predictors;
      next.push_back(variable);
      if (fit.residualFreedom == 0) {
        refuse(variable, Refusal::Reason::Freedom);
      } else if (std::optional<LinearFit> larger = tolerableFit(next)) {
        fit = std::move(*larger);
        entered.push_back(variable);
      } else {
        refuse(variable, Refusal::Reason::Tolerance);
      }
    }
    if (!entered.empty()) step(std::move(entered), {}, std::move(fit));
  }

  // At one size of the model significances fall as partial correlations grow, and unlike them
  // do not all become zero when the correlations are high.
  bool enterBest(const PredictorList& list) {
    const ExcludedCandidate* best = nullptr;
    for (const std::size_t variable : list) {
      const auto found = std::ranges::find(current_->excluded, variable, &ExcludedCandidate::variable);
      if (found == current_->excluded.end()) continue;
      const bool enters =
          found->minimumTolerance >= criteria_.tolerance && found->significance <= criteria_.enter;
      if (!enters || !found->significance) continue;
      const bool better =
          best == nullptr || std::abs(*found->partialCorrelation) > std::abs(*best->partialCorrelation);
      if (better) best = &*found;
    }
    if (best == nullptr) return false;
    const std::size_t entered = best->variable;
    PredictorList next = current_->predictors;
    next.push_back(entered);
    std::optional<LinearFit> fit = system_.fit(next);
    if (!fit) return false;
    step({entered}, {}, std::move(*fit));
    return true;
  }

  bool removeWorst(const PredictorList& list) {
    std::optional<std::size_t> worst;  // index in the model
    double smallest = 0;
    for (const std::size_t variable : list) {
      const auto found = std::ranges::find(current_->predictors, variable);
      if (found == current_->predictors.end()) continue;
      const auto index = static_cast<std::size_t>(found - current_->predictors.begin());
      const Coefficient& coefficient = current_->coefficients[index];
      if (!coefficient.t || coefficient.significance < criteria_.remove) continue;
      if (worst && std::abs(*coefficient.t) >= smallest) continue;
      smallest = std::abs(*coefficient.t);
      worst = index;
    }
    if (!worst) return false;
    PredictorList next = current_->predictors;
    const std::size_t removed = next[*worst];
    next.erase(next.begin() + static_cast<std::ptrdiff_t>(*worst));
    std::optional<LinearFit> fit = system_.fit(next);
    if (!fit) return false;
    step({}, {removed}, std::move(*fit));
    return true;
  }

  const LinearSystem& system_;
  const SelectionCriteria& criteria_;
  std::optional<LinearFit> current_;
  std::size_t block_ = 0;
  Selection selection_;
};

}  // namespace

Selection selectPredictors(const LinearSystem& system, std::span<const SelectionBlock> blocks,
                           const SelectionCriteria& criteria) {
  Selector selector(system, criteria);
  selector.run(blocks);
  return selector.take();
}

}  // namespace genostat::standalone
