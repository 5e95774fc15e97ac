#include "standalone/procedures/correlation_command.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <string_view>

#include "standalone/language/translation.h"
#include "standalone/procedures/variable_list.h"
#include "standalone/syntax/token_cursor.h"

namespace genostat::standalone {

namespace {

// `list [WITH list]`
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

void parseCorrelationPrint(TokenCursor& cursor, bool ranks, CorrelationRequest& request) {
  // The first three choose among coefficients of ranks.
  enum : std::size_t { Spearman, Kendall, Both, OneTail, TwoTail, Sig, NoSig, Full, Lower };
  static constexpr std::array<std::string_view, Lower + 1> kKeywords = {
      "SPEARMAN", "KENDALL", "BOTH", "ONETAIL", "TWOTAIL", "SIG", "NOSIG", "FULL", "LOWER"};
  const std::size_t first = ranks ? Spearman : OneTail;
  while (!cursor.atSubcommandEnd()) {
    const std::size_t keyword = first + cursor.expectKeyword(std::span(kKeywords).subspan(first));
    request.spearman |= keyword == Spearman || keyword == Both;
    request.kendall |= keyword == Kendall || keyword == Both;
    request.print.oneTailed |= keyword == OneTail;
    request.print.twoTailed |= keyword == TwoTail;
    if (keyword == Sig || keyword == NoSig) request.print.flagged = keyword == NoSig;
    if (keyword == Full || keyword == Lower) request.print.lower = keyword == Lower;
  }
}

void parseCorrelationStatistics(TokenCursor& cursor, CorrelationRequest& request) {
  enum : std::size_t { Descriptives, Products };
  static constexpr std::array<std::string_view, 3> kKeywords = {"DESCRIPTIVES", "XPROD", "ALL"};
  while (!cursor.atSubcommandEnd()) {
    const std::size_t keyword = cursor.expectKeyword(kKeywords, translated("statistic"));
    if (keyword != Products) request.descriptives = true;
    if (keyword != Descriptives) request.products = true;
  }
}

// The last of each pair counts. INCLUDE and EXCLUDE change nothing: there are no values that a user has
// declared missing.
Deletion parseDeletion(TokenCursor& cursor) {
  enum : std::size_t { Pairwise, Listwise };
  static constexpr std::array<std::string_view, 4> kKeywords = {"PAIRWISE", "LISTWISE", "INCLUDE", "EXCLUDE"};
  Deletion deletion = Deletion::Pairwise;
  while (!cursor.atSubcommandEnd()) {
    const std::size_t keyword = cursor.expectKeyword(kKeywords);
    if (keyword == Pairwise) deletion = Deletion::Pairwise;
    if (keyword == Listwise) deletion = Deletion::Listwise;
  }
  return deletion;
}

}  // namespace

CorrelationRequest parseCorrelationRequest(CommandContext& context, const Dataset& dataset, bool ranks) {
  static constexpr std::array<std::string_view, 4> kSubcommands = {"VARIABLES", "PRINT", "STATISTICS",
                                                                   "MISSING"};
  static constexpr std::array<std::string_view, 3> kRankSubcommands = {"VARIABLES", "PRINT", "MISSING"};
  const TokenCursor::Keywords subcommands =
      ranks ? TokenCursor::Keywords(kRankSubcommands) : TokenCursor::Keywords(kSubcommands);
  TokenCursor cursor(context.command);
  const Token& name = cursor.next();
  if (ranks) cursor.next();  // CORR
  CorrelationRequest request;
  // The list may follow the command's name.
  if (atBareVariableList(dataset, cursor, subcommands))
    request.lists.push_back(parseCorrelationList(context, dataset, cursor));
  while (const auto index = cursor.nextSubcommand(subcommands)) {
    const std::string_view subcommand = subcommands[*index];
    if (subcommand == "VARIABLES") request.lists.push_back(parseCorrelationList(context, dataset, cursor));
    if (subcommand == "PRINT") parseCorrelationPrint(cursor, ranks, request);
    if (subcommand == "STATISTICS") parseCorrelationStatistics(cursor, request);
    if (subcommand == "MISSING") request.deletion = parseDeletion(cursor);
  }
  if (request.lists.empty())
    TokenCursor::fail(translated("{1} names no variable", {ranks ? "NONPAR CORR" : "CORRELATIONS"}), name);
  if (ranks && !request.kendall) request.spearman = true;
  return request;
}

}  // namespace genostat::standalone
