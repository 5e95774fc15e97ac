// NONPAR CORR: Kendall's and Spearman's coefficients of ranks.
//
//   NONPAR CORR [VARIABLES=] list [WITH list]
//     [/VARIABLES=list [WITH list]]...             a further table for each
//     [/PRINT=[SPEARMAN] [KENDALL] [BOTH] [TWOTAIL] [ONETAIL] [SIG|NOSIG] [FULL|LOWER]]
//     [/MISSING=[PAIRWISE|LISTWISE] [INCLUDE|EXCLUDE]].
//
// Spearman's unless others are named. Tails and flags are as in CORRELATIONS.

#include <array>
#include <span>
#include <string_view>

#include "standalone/language/translation.h"
#include "standalone/output/output_document.h"
#include "standalone/procedures/commands.h"
#include "standalone/procedures/correlation_command.h"
#include "standalone/procedures/correlation_table.h"
#include "standalone/procedures/variable_list.h"
#include "standalone/statistics/rank_correlation.h"
#include "standalone/syntax/token_cursor.h"

namespace genostat::standalone {

namespace {

struct RankRequest {
  std::vector<CorrelationList> lists;
  CorrelationPrint print;
  bool spearman = false;
  bool kendall = false;
  Deletion deletion = Deletion::Pairwise;
};

void parseRankPrint(TokenCursor& cursor, RankRequest& request) {
  enum : std::size_t { Spearman, Kendall, Both, OwnCount };
  static constexpr auto kRankKeywords = [] {
    std::array<std::string_view, OwnCount + kCorrelationPrintKeywords.size()> keywords = {"SPEARMAN",
                                                                                          "KENDALL", "BOTH"};
    for (std::size_t i = 0; i < kCorrelationPrintKeywords.size(); ++i) {
      keywords[OwnCount + i] = kCorrelationPrintKeywords[i];
    }
    return keywords;
  }();
  while (!cursor.atSubcommandEnd()) {
    const std::size_t keyword = cursor.expectKeyword(kRankKeywords);
    if (keyword >= OwnCount) {
      applyPrintKeyword(request.print, keyword - OwnCount);
      continue;
    }
    if (keyword != Kendall) request.spearman = true;
    if (keyword != Spearman) request.kendall = true;
  }
}

RankRequest parseRankRequest(CommandContext& context, const Dataset& dataset) {
  enum : std::size_t { VariablesPart, PrintPart, MissingPart };
  static constexpr std::array<std::string_view, 3> kRankSubcommands = {"VARIABLES", "PRINT", "MISSING"};
  TokenCursor cursor(context.command);
  const Token& name = cursor.next();
  cursor.next();  // CORR
  RankRequest request;
  // The list may stand right behind the command's name.
  if (atBareVariableList(dataset, cursor, kRankSubcommands)) {
    request.lists.push_back(parseCorrelationList(context, dataset, cursor));
  }
  while (const auto subcommand = cursor.nextSubcommand(kRankSubcommands)) {
    switch (*subcommand) {
      case VariablesPart:
        request.lists.push_back(parseCorrelationList(context, dataset, cursor));
        break;
      case PrintPart:
        parseRankPrint(cursor, request);
        break;
      case MissingPart:
        request.deletion = parseDeletion(cursor);
        break;
      default:
        break;
    }
  }
  if (request.lists.empty()) TokenCursor::fail(translated("{1} names no variable", {"NONPAR CORR"}), name);
  if (!request.kendall) request.spearman = true;
  return request;
}

}  // namespace

void runNonparCorr(CommandContext& context) {
  const Dataset& dataset = requireActiveDataset(context);
  const RankRequest request = parseRankRequest(context, dataset);
  for (const CorrelationList& list : request.lists) {
    const RankCorrelation ranks(list.values(), request.deletion);
    CorrelationTable table(translated("Nonparametric Correlations"), list, request.print, request.deletion);
    if (request.kendall)
      table.add({translated("Kendall's tau_b"), translated("Correlation Coefficient")}, ranks.kendall());
    if (request.spearman)
      table.add({translated("Spearman's rho"), translated("Correlation Coefficient")}, ranks.spearman());
    context.output.addTable("NONPAR CORR", table.finish());
  }
}

}  // namespace genostat::standalone
