#include "standalone/procedures/correlation_command.h"

#include <algorithm>
#include <numeric>

#include "standalone/procedures/variable_list.h"

namespace genostat::standalone {

std::vector<std::span<const double>> CorrelationList::values() const {
  std::vector<std::span<const double>> spans;
  for (const Column* variable : variables) {
    spans.emplace_back(variable->numbers);
  }
  return spans;
}

CorrelationList parseCorrelationList(CommandContext& context, const Dataset& dataset, TokenCursor& cursor) {
  CorrelationList list;
  list.variables = parseNumericVariables(context, dataset, cursor, "WITH");
  list.rows.resize(list.variables.size());
  std::iota(list.rows.begin(), list.rows.end(), std::size_t{0});
  list.columns = list.rows;
  if (cursor.atSubcommandEnd()) return list;
  cursor.next();  // WITH
  list.square = false;
  list.columns.clear();
  for (const Column* variable : parseNumericVariables(context, dataset, cursor)) {
    const auto found = std::ranges::find(list.variables, variable);
    list.columns.push_back(static_cast<std::size_t>(found - list.variables.begin()));
    if (found == list.variables.end()) list.variables.push_back(variable);
  }
  return list;
}

void applyPrintKeyword(CorrelationPrint& print, std::size_t keyword) {
  enum : std::size_t { OneTail, TwoTail, Sig, NoSig, Full, Lower };
  static_assert(Lower + 1 == kCorrelationPrintKeywords.size());
  switch (keyword) {
    case OneTail:
      print.oneTailed = true;
      break;
    case TwoTail:
      print.twoTailed = true;
      break;
    case Sig:
      print.flagged = false;
      break;
    case NoSig:
      print.flagged = true;
      break;
    case Full:
      print.lower = false;
      break;
    case Lower:
      print.lower = true;
      break;
    default:
      break;
  }
}

Deletion parseDeletion(TokenCursor& cursor) {
  enum : std::size_t { Pairwise, Listwise };
  static constexpr std::array<std::string_view, 4> kDeletionKeywords = {"PAIRWISE", "LISTWISE", "INCLUDE",
                                                                        "EXCLUDE"};
  Deletion deletion = Deletion::Pairwise;
  while (!cursor.atSubcommandEnd()) {
    const std::size_t keyword = cursor.expectKeyword(kDeletionKeywords);
    if (keyword == Pairwise) deletion = Deletion::Pairwise;
    if (keyword == Listwise) deletion = Deletion::Listwise;
  }
  return deletion;
}

}  // namespace genostat::standalone
