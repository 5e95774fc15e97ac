// What CORRELATIONS and NONPAR CORR are asked for.
#pragma once

#include <cstddef>
#include <vector>

#include "standalone/data/dataset.h"
#include "standalone/session/command_context.h"
#include "standalone/statistics/pair_groups.h"

namespace genostat::standalone {

// The variables of one table: each with each other one or, with WITH, rows with columns.
struct CorrelationList {
  std::vector<const Column*> variables;  // each once
  std::vector<std::size_t> rows;         // positions within `variables`, as are the columns
  std::vector<std::size_t> columns;
  bool square = true;  // rows and columns are the same
};

struct CorrelationPrint {
  bool oneTailed = false;
  bool twoTailed = false;
  bool flagged = false;  // marks at significant coefficients
  bool lower = false;    // of a square table nothing above the diagonal

  // Two-tailed unless only the other was asked for.
  bool showsTwoTailed() const { return twoTailed || !oneTailed; }
};

struct CorrelationRequest {
  std::vector<CorrelationList> lists;  // one or more
  CorrelationPrint print;
  Deletion deletion = Deletion::Pairwise;
  // Of CORRELATIONS alone.
  bool descriptives = false;
  bool products = false;
  // Of NONPAR CORR alone.
  bool spearman = false;
  bool kendall = false;
};

// Parses the context's command, which is one of the two; `ranks`: NONPAR CORR. Throws CommandError.
CorrelationRequest parseCorrelationRequest(CommandContext& context, const Dataset& dataset, bool ranks);

}  // namespace genostat::standalone
