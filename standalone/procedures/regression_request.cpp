#include "standalone/procedures/regression_request.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string>
#include <string_view>

#include "common/text/ascii.h"
#include "standalone/language/translation.h"
#include "standalone/procedures/variable_list.h"
#include "standalone/syntax/token_cursor.h"

namespace genostat::standalone {

namespace {

using ColumnList = std::vector<const Column*>;

class RegressionParser {
 public:
  RegressionParser(CommandContext& context, const Dataset& dataset)
      : context_(context), dataset_(dataset), cursor_(context.command) {}

  RegressionRequest parse() {
    static constexpr std::array<std::string_view, 9> kSubcommands = {"VARIABLES", "MISSING", "STATISTICS",
                                                                     "CRITERIA",  "ORIGIN",  "NOORIGIN",
                                                                     "DEPENDENT", "METHOD",  "RESIDUALS"};
    static constexpr std::array<std::string_view, 1> kMissing = {"LISTWISE"};
    const Token& name = cursor_.next();
    while (const auto subcommand = cursor_.nextSubcommand(kSubcommands)) {
      const std::string_view keyword = kSubcommands[*subcommand];
      if (keyword == "VARIABLES") variables_ = parseNumericVariables(context_, dataset_, cursor_);
      if (keyword == "MISSING") cursor_.expectKeyword(kMissing);
      if (keyword == "STATISTICS") parseStatistics();
      if (keyword == "CRITERIA") parseCriteria();
      if (keyword == "ORIGIN" || keyword == "NOORIGIN") request_.throughOrigin = keyword == "ORIGIN";
      if (keyword == "DEPENDENT") parseDependents();
      if (keyword == "METHOD") parseMethod();
      if (keyword == "RESIDUALS") parseResiduals();
    }
    if (request_.dependents.empty())
      TokenCursor::fail(translated("{1} needs /{2}", {"REGRESSION", "DEPENDENT"}), name);
    if (blocks_.empty()) TokenCursor::fail(translated("{1} needs /{2}", {"REGRESSION", "METHOD"}), name);
    if (request_.criteria.enter >= request_.criteria.remove) {
      TokenCursor::fail(translated("PIN must be smaller than POUT, or a selection might not end"),
                        *criteriaPlace_, translated("without a value PIN is .05 and POUT .10"));
    }
    if (request_.statistics.none()) {
      for (const RegressionStatistic statistic :
           {kRegressionCoefficients, kRegressionExcluded, kRegressionSummary, kRegressionAnova}) {
        request_.statistics.set(statistic);
      }
    }
    resolveBlocks();
    return std::move(request_);
  }

 private:
  // A METHOD subcommand; an empty list means that of VARIABLES.
  struct Block {
    SelectionMethod method;
    ColumnList variables;
    const Token* place;  // the method
    const Token* first;  // of the list
    bool all;            // the list is ALL, or none: it leaves the dependents out
  };

  void parseDependents() {
    const Token& first = cursor_.peek();
    if (!request_.dependents.empty())
      TokenCursor::fail(translated("the dependent variable is named twice"), first);
    if (cursor_.atSubcommandEnd())
      TokenCursor::fail(translated("{1} names no variable", {"DEPENDENT"}), first);
    request_.dependents = parseVariables(dataset_, cursor_);
    request_.dependentPlace = first.range;
    for (const Column* column : request_.dependents) {
      if (column->type == Column::Type::Numeric) continue;
      TokenCursor::fail(translated("the dependent variable {1} is a string variable", {column->name}),
                        tokenNaming(first, *column), translated("a regression needs a numeric one"));
    }
  }

  void parseMethod() {
    static constexpr std::array<std::string_view, 4> kMethods = {"ENTER", "STEPWISE", "FORWARD", "BACKWARD"};
    const Token& place = cursor_.peek();
    const auto method = static_cast<SelectionMethod>(cursor_.expectKeyword(kMethods, translated("method")));
    const Token& first = cursor_.peek();
    const Token& second = cursor_.peek(1);
    Block block{method, {}, &place, &first, true};
    if (!cursor_.atSubcommandEnd()) {
      const bool alone = second.isSymbol('/') || second.kind == Token::Kind::End;
      block.all = alone && first.kind == Token::Kind::Word && common::equalsIgnoreCase(first.text, "ALL") &&
                  dataset_.find("ALL") == nullptr;
      block.variables = parseNumericVariables(context_, dataset_, cursor_);
    }
    blocks_.push_back(std::move(block));
  }

  void parseStatistics() {
    static constexpr std::size_t kDefaults = kRegressionStatisticCount;
    static constexpr std::array<std::string_view, kRegressionStatisticCount + 2> kKeywords = {
        "COEFF", "OUTS", "R", "ANOVA", "CHANGE", "COLLIN", "TOL", "CI", "ZPP", "DEFAULTS", "ALL"};
    auto& statistics = request_.statistics;
    while (!cursor_.atSubcommandEnd()) {
      const std::size_t keyword = cursor_.expectKeyword(kKeywords, translated("statistic"));
      if (keyword < kRegressionStatisticCount) {
        statistics.set(keyword);
      } else if (keyword == kDefaults) {
        for (std::size_t i = kRegressionCoefficients; i <= kRegressionAnova; ++i) {
          statistics.set(i);
        }
      } else {
        statistics.set();
      }
      if (keyword == kRegressionInterval && cursor_.peek().isSymbol('(')) {
        request_.confidenceLevel =
            parseInParentheses(translated("a confidence level"), 0, std::nextafter(100.0, 0.0),
                               translated("a confidence level lies above 0 and below 100 percent")) /
            100;
      }
      if (keyword == kRegressionDiagnostics) statistics.set(kRegressionTolerance);
    }
  }

  void parseCriteria() {
    static constexpr std::array<std::string_view, 3> kKeywords = {"PIN", "POUT", "TOLERANCE"};
    criteriaPlace_ = &cursor_.peek();
    while (!cursor_.atSubcommandEnd()) {
      const std::size_t keyword = cursor_.expectKeyword(kKeywords, translated("criterion"));
      if (keyword == 2) {
        request_.criteria.tolerance = parseInParentheses(translated("a tolerance"), -1e-300, 1,
                                                         translated("a tolerance lies from 0 to 1"));
      } else {
        double& criterion = keyword == 0 ? request_.criteria.enter : request_.criteria.remove;
        criterion = parseInParentheses(translated("a probability"), 0, 1,
                                       translated("a probability lies above 0 and up to 1"));
      }
    }
  }

  void parseResiduals() {
    static constexpr std::array<std::string_view, 2> kKeywords = {"PRESS", "NORMPROB"};
    static constexpr std::array<std::string_view, 1> kPlotted = {"ZRESID"};
    request_.residuals = true;
    while (!cursor_.atSubcommandEnd()) {
      if (cursor_.expectKeyword(kKeywords, translated("{1} keyword", {"RESIDUALS"})) == 0) {
        request_.press = true;
        continue;
      }
      request_.normalPlot = true;
      if (!cursor_.acceptSymbol('(')) continue;
      cursor_.expectKeyword(kPlotted, translated("residual"));
      cursor_.expectSymbol(')');
    }
  }

  // "(NUMBER)" with above < NUMBER <= upTo.
  double parseInParentheses(std::string_view what, double above, double upTo, std::string_view range) {
    cursor_.expectSymbol('(');
    const Token& token = cursor_.peek();
    const double number = cursor_.expectNumber(what);
    if (!(number > above && number <= upTo)) {
      TokenCursor::fail(translated("the number {1} is out of range", {token.text}), token,
                        std::string(range));
    }
    cursor_.expectSymbol(')');
    return number;
  }

  void resolveBlocks() {
    request_.methodPlace = blocks_.front().place->range;
    const auto isDependent = [this](const Column* column) {
      return std::ranges::find(request_.dependents, column) != request_.dependents.end();
    };
    for (Block& block : blocks_) {
      if (block.variables.empty()) block.variables = variables_;
      if (block.all) std::erase_if(block.variables, isDependent);
      if (block.variables.empty()) {
        TokenCursor::fail(translated("{1} names no variable", {"METHOD"}), *block.first,
                          translated("expected the predictors after the method"));
      }
      SelectionBlock& resolved = request_.blocks.emplace_back(SelectionBlock{block.method, {}});
      for (const Column* column : block.variables) {
        if (isDependent(column)) {
          TokenCursor::fail(
              translated("the dependent variable {1} cannot be a predictor as well", {column->name}),
              tokenNaming(*block.first, *column));
        }
        const auto found = std::ranges::find(request_.predictors, column);
        resolved.variables.push_back(static_cast<std::size_t>(found - request_.predictors.begin()));
        if (found == request_.predictors.end()) request_.predictors.push_back(column);
      }
    }
  }

  CommandContext& context_;
  const Dataset& dataset_;
  TokenCursor cursor_;
  RegressionRequest request_;
  std::vector<Block> blocks_;
  ColumnList variables_;  // of VARIABLES
  const Token* criteriaPlace_ = nullptr;
};

}  // namespace

RegressionRequest parseRegression(CommandContext& context, const Dataset& dataset) {
  return RegressionParser(context, dataset).parse();
}

}  // namespace genostat::standalone
