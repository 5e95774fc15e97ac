// What CORRELATIONS and NONPAR CORR have in common: lists of variables, tails, flags and shapes.
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

#include "standalone/data/dataset.h"
#include "standalone/session/command_context.h"
#include "standalone/statistics/pair_groups.h"
#include "standalone/syntax/token_cursor.h"

namespace genostat::standalone {

// The variables of one table: every one with every other one, or, behind WITH, rows with columns.
struct CorrelationList {
  std::vector<const Column*> variables;  // each once
  std::vector<std::size_t> rows;         // positions within `variables`, as are the columns
  std::vector<std::size_t> columns;
  bool square = true;  // rows and columns are the same

  std::vector<std::span<const double>> values() const;  // [variable][case]
};

// `list [WITH list]` at the cursor, as parseNumericVariables takes lists.
CorrelationList parseCorrelationList(CommandContext& context, const Dataset& dataset, TokenCursor& cursor);

struct CorrelationPrint {
  bool oneTailed = false;
  bool twoTailed = false;
  bool flagged = false;  // marks at significant coefficients
  bool lower = false;    // of a square table nothing above the diagonal

  // Two-tailed unless only the other was asked for.
  bool showsTwoTailed() const { return twoTailed || !oneTailed; }
};

// The keywords of /PRINT that both commands have; applyPrintKeyword takes their indices.
inline constexpr std::array<std::string_view, 6> kCorrelationPrintKeywords = {"ONETAIL", "TWOTAIL", "SIG",
                                                                              "NOSIG",   "FULL",    "LOWER"};
void applyPrintKeyword(CorrelationPrint& print, std::size_t keyword);

// PAIRWISE or LISTWISE, INCLUDE or EXCLUDE; the last of each counts, and the latter two change
// nothing, as there are no values that a user has declared missing.
Deletion parseDeletion(TokenCursor& cursor);

}  // namespace genostat::standalone
