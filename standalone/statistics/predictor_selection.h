// Which predictors a regression takes in, and in which order.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "standalone/statistics/linear_system.h"

namespace genostat::standalone {

enum class SelectionMethod { Enter, Stepwise, Forward, Backward };

// Equal ones are decided by the order of the list. `enter` < `remove`, or a selection may not end.
struct SelectionCriteria {
  double enter = 0.05;        // a predictor enters with a significance of F up to this
  double remove = 0.10;       // and is removed with one from this on
  double tolerance = 0.0001;  // none enters whose tolerance, or that of one in the model, would be below
};

// One list of predictors and how it is gone through. A block begins with the model that the block before
// it left; it removes only predictors of its own list.
//   Enter     all that the tolerance admits, in the list's order, as one step
//   Forward   at each step the one with the smallest significance, while that admits it
//   Stepwise  the same, but after each entry all that do not hold are removed, worst first
//   Backward  enters all, then removes the one with the largest significance, while that removes it
struct SelectionBlock {
  SelectionMethod method = SelectionMethod::Enter;
  std::vector<std::size_t> variables;
};

struct SelectionStep {
  std::size_t block = 0;
  std::vector<std::size_t> entered;
  std::vector<std::size_t> removed;
  LinearFit fit;
};

// A predictor that entering all of a list left out, or, with any method, that has nothing to explain by.
struct Refusal {
  enum class Reason { Constant, OutOfRange, Tolerance, Freedom };
  std::size_t variable = 0;
  Reason reason = Reason::Tolerance;
};

struct Selection {
  std::vector<SelectionStep> steps;  // those that changed the model
  std::vector<Refusal> refusals;     // each variable once
};

Selection selectPredictors(const LinearSystem& system, std::span<const SelectionBlock> blocks,
                           const SelectionCriteria& criteria);

}  // namespace genostat::standalone
