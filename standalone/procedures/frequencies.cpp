// FREQUENCIES: counts, statistics, percentiles and histograms of variables one by one.
//
//   FREQUENCIES [VARIABLES=] list
//     [/FORMAT=[AVALUE|DVALUE|AFREQ|DFREQ] [TABLE|NOTABLE] [LIMIT(n)]]
//     [/NTILES=n]... [/PERCENTILES=p [p]...]...
//     [/STATISTICS=[DEFAULT] [ALL] [NONE] [MEAN] [SEMEAN] [MEDIAN] [MODE] [STDDEV] [CV] [VARIANCE]
//                  [SKEWNESS] [SESKEW] [KURTOSIS] [SEKURT] [RANGE] [MINIMUM] [MAXIMUM] [SUM]]
//     [/HISTOGRAM[=[NORMAL|NONORMAL]]] [/ORDER=ANALYSIS|VARIABLE] [/MISSING=EXCLUDE|INCLUDE].
//
// The percentiles of all /NTILES and /PERCENTILES come as one list. No values are declared missing
// here beside those that are not there, so that both words of /MISSING mean the same.

#include <array>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "standalone/language/translation.h"
#include "standalone/procedures/commands.h"
#include "standalone/procedures/frequencies.h"
#include "standalone/procedures/variable_list.h"
#include "standalone/syntax/token_cursor.h"

namespace genostat::standalone {

namespace {

constexpr std::array kOfferedStatistics = {kMean,          kMeanError, kMedian,   kMode,          kDeviation,
                                           kVariation,     kVariance,  kSkewness, kSkewnessError, kKurtosis,
                                           kKurtosisError, kRange,     kMinimum,  kMaximum,       kSum};

using Shares = std::map<double, Share>;  // by percent

// A whole number of at least `least` and at most `most`.
int expectCount(TokenCursor& cursor, std::string_view what, int least, int most) {
  const Token& token = cursor.peek();
  const int count = cursor.expectInteger(translated("a whole number for {1}", {what}));
  if (count < least || count > most) {
    TokenCursor::fail(
        translated("{1} takes a number from {2} to {3}", {what, std::to_string(least), std::to_string(most)}),
        token);
  }
  return count;
}

void parseTiles(TokenCursor& cursor, Shares& shares) {
  constexpr int kMostTiles = 1000;
  const int tiles = expectCount(cursor, "NTILES", 2, kMostTiles);
  for (int tile = 1; tile < tiles; ++tile) {
    const Share share = shareOfTiles(tile, tiles);
    shares.emplace(share.percent, share);
  }
}

void parsePercentiles(TokenCursor& cursor, Shares& shares) {
  do {
    const Token& token = cursor.peek();
    const double percent = cursor.expectNumber(translated("a percentile"));
    if (!(percent >= 0 && percent <= 100))
      TokenCursor::fail(translated("a percentile lies between 0 and 100"), token);
    shares.emplace(percent, shareOfPercent(percent));
    cursor.acceptSymbol(',');
  } while (!cursor.atSubcommandEnd());
}

void parseFormat(TokenCursor& cursor, FrequenciesRequest& request) {
  static constexpr std::array<std::string_view, 7> kWords = {"AVALUE", "DVALUE",  "AFREQ", "DFREQ",
                                                             "TABLE",  "NOTABLE", "LIMIT"};
  enum Word : std::size_t { Table = 4, NoTable, Limit };
  constexpr int kMostRows = 100'000;
  while (!cursor.atSubcommandEnd()) {
    const std::size_t word = cursor.expectKeyword(kWords);
    if (word < Table) {
      request.rowOrder = static_cast<FrequenciesRequest::RowOrder>(word);
    } else if (word == Limit) {
      cursor.expectSymbol('(');
      request.mostRows = static_cast<std::size_t>(expectCount(cursor, "LIMIT", 1, kMostRows));
      cursor.expectSymbol(')');
    } else {
      request.tables = word == Table;
    }
  }
}

void parseHistogram(TokenCursor& cursor, FrequenciesRequest& request) {
  static constexpr std::array<std::string_view, 2> kWords = {"NONORMAL", "NORMAL"};
  request.histograms = true;
  request.normalCurves = false;
  while (!cursor.atSubcommandEnd()) {
    request.normalCurves = cursor.expectKeyword(kWords) == 1;
  }
}

FrequenciesRequest parseFrequencies(const CommandContext& context, const Dataset& dataset) {
  static constexpr std::array<std::string_view, 8> kSubcommands = {
      "VARIABLES", "FORMAT", "NTILES", "PERCENTILES", "STATISTICS", "HISTOGRAM", "ORDER", "MISSING"};
  static constexpr std::array<std::string_view, 2> kOrders = {"ANALYSIS", "VARIABLE"};
  static constexpr std::array<std::string_view, 2> kMissing = {"EXCLUDE", "INCLUDE"};
  TokenCursor cursor(context.command);
  const Token& command = cursor.next();
  FrequenciesRequest request;
  Shares shares;
  // The list may follow the command's name.
  if (atBareVariableList(dataset, cursor, kSubcommands)) request.variables = parseVariables(dataset, cursor);
  while (const auto subcommand = cursor.nextSubcommand(kSubcommands)) {
    const std::string_view name = kSubcommands[*subcommand];
    if (name == "VARIABLES") {
      if (!request.variables.empty())
        TokenCursor::fail(translated("the variables are listed twice"), cursor.peek());
      request.variables = parseVariables(dataset, cursor);
    }
    if (name == "FORMAT") parseFormat(cursor, request);
    if (name == "NTILES") parseTiles(cursor, shares);
    if (name == "PERCENTILES") parsePercentiles(cursor, shares);
    if (name == "STATISTICS") request.statistics = parseStatistics(cursor, kOfferedStatistics, true);
    if (name == "HISTOGRAM") parseHistogram(cursor, request);
    if (name == "ORDER") request.byVariable = cursor.expectKeyword(kOrders) == 1;
    if (name == "MISSING") cursor.expectKeyword(kMissing);
  }
  if (request.variables.empty())
    TokenCursor::fail(translated("{1} names no variable", {"FREQUENCIES"}), command);
  for (const auto& [percent, share] : shares) {
    request.percentiles.push_back(share);
  }
  return request;
}

}  // namespace

void runFrequencies(CommandContext& context) {
  const Dataset& dataset = requireActiveDataset(context);
  showFrequencies(parseFrequencies(context, dataset), context.output);
}

}  // namespace genostat::standalone
