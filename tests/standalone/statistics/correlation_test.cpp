#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "standalone/statistics/kendall.h"
#include "standalone/statistics/rank_correlation.h"

namespace genostat::standalone {
namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
using Values = std::vector<double>;

// All correlations of the variables, each in its place.
struct AllMatrices {
  explicit AllMatrices(const std::vector<Values>& variables, Deletion deletion = Deletion::Pairwise) {
    const std::vector<std::span<const double>> spans(variables.begin(), variables.end());
    const RankCorrelation ranks(spans, deletion);
    matrices = {pearsonMatrix(spans, deletion), ranks.spearman(), ranks.kendall()};
  }
  std::vector<CorrelationMatrix> matrices;
};

void expectSame(const std::optional<double>& actual, double expected, double tolerance) {
  ASSERT_EQ(actual.has_value(), !std::isnan(expected));
  if (actual) {
    EXPECT_LE(std::abs(*actual - expected), tolerance * std::abs(expected)) << *actual;
  }
}

unsigned draw(std::mt19937& random, unsigned below) {
  return static_cast<unsigned>(random() % below);
}

Values nearlyConstant(int period) {
  Values values = {10000000.2};
  for (int i = 0; i < 1000; ++i) {
    values.push_back(i % period == 0 ? 10000000.1 : 10000000.3);
  }
  return values;
}

struct Row {
  std::string what;
  Values x, y;
  std::size_t count;
  double crossProduct;
  struct Expected {
    double coefficient, oneTailed;
  } pearson, spearman, kendall;
  Correlation::Obstacle obstacle = Correlation::Obstacle::None;
};

// Expected values: exact rational arithmetic on the doubles, by the definitions over all pairs of
// cases; roots and the distributions' series with 330 digits.
TEST(Correlation, AgreesWithExactArithmetic) {
  using enum Correlation::Obstacle;
  const Row::Expected none = {kNone, kNone};
  const std::vector<Row> rows = {
      {"missing values",
       {2.5, 3.0, kNone, -1.25, 10.0, 7.75, 0.5, 4.0, 6.5},
       {1.0, 2.25, 3.0, 0.5, kNone, 9.75, 1.5, 8.0, -3.0},
       7,
       31.723214285714285714,
       {0.37528579235433853490, 0.20339770275102312816},
       {0.42857142857142857143, 0.16868415554291200796},
       {0.42857142857142857143, 0.088237145387034422150}},
      {"ties, also in both",
       {1, 1, 2, 2, 2, 3, 3, 4, 4, 4, 4, 5},
       {2, 1, 1, 2, 2, 2, 5, 4, 4, 3, 4, 5},
       12,
       16.916666666666666667,
       {0.81248763891894090178, 0.00066006860233588010733},
       {0.80740740740740740741, 0.00074761243745063400520},
       {0.69090909090909090909, 0.0026601180970193803827}},
      {"little spread on a large mean",
       nearlyConstant(2),
       nearlyConstant(4),
       1001,
       5.0000000559258742433,
       {0.57725416427702862955, 2.6140125364437933821e-90},
       {0.57696690281620248670, 3.3524850789706533955e-90},
       {0.57696728389428644676, 8.0843759445248144940e-75}},
      {"falling",
       {0.1, 0.2, 0.3, 0.4, 0.5, 0.6, 0.7},
       {9.7, 8.1, 8.2, 6.6, 5.9, 4.2, 4.0},
       7,
       -2.7199999999999993860,
       {-0.98210946797808572996, 4.0719914396732191877e-5},
       {-0.96428571428571428571, 0.00022707458459708831237},
       {-0.90476190476190476190, 0.0021615556127657432455}},
      {"nearly a line, whose significance needs more digits of r than there are",
       {1, 2, 3, 4, 5, 6, 7, 8, 9, 10},
       {1.001, 2, 3, 4, 5, 6, 7, 8, 9, 10},
       10,
       82.495500000000000496,
       {0.99999999603262508212, 5.4195226165978159470e-34},
       {1, 0},
       {1, 2.8497058116659220225e-5}},
      {"squares beyond double's range",
       {1e-200, 2e-200, 4e-200, 3e-200, 7e-200, 5e-200},
       {3e250, 1e250, 5e250, 2e250, 6e250, 9e250},
       6,
       2.2666666666666666499e+51,
       {0.71283368897090438999, 0.055928111782850867572},
       {0.77142857142857142857, 0.036198250728862973761},
       {0.6, 0.045436969993124549510}},
      {"a line",
       {1, 2, 3, 4},
       {-0.5, -1, -1.5, -2},
       4,
       -2.5,
       {-1, 0},
       {-1, 0},
       {-1, 0.020770033504942590673}},
      {"three cases",
       {1, 2, 3},
       {1, 3, 2},
       3,
       1,
       {0.5, 1.0 / 3},
       {0.5, 1.0 / 3},
       {1.0 / 3, 0.30075406722029492796}},
      {"two cases", {1, 2}, {5, 3}, 2, -1, {-1, kNone}, {-1, kNone}, {-1, 0.15865525393145705141}},
      {"one case", {1, kNone}, {5, 3}, 1, kNone, none, none, none, TooFewCases},
      {"no case", {1, kNone}, {kNone, 3}, 0, kNone, none, none, none, TooFewCases},
      {"constant where both are known",
       {0.1, 0.1, 0.1, 7},
       {5, 3, 4, kNone},
       3,
       0,
       none,
       none,
       none,
       Constant},
      {"zeros of both signs", {0.0, -0.0, 0.0}, {5, 3, 4}, 3, 0, none, none, none, Constant},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    const AllMatrices all({row.x, row.y});
    const Row::Expected expected[] = {row.pearson, row.spearman, row.kendall};
    for (std::size_t kind = 0; kind < 3; ++kind) {
      SCOPED_TRACE(kind);
      const Correlation& correlation = all.matrices[kind].at(0, 1);
      EXPECT_EQ(correlation.caseCount, row.count);
      EXPECT_EQ(correlation.obstacle, row.obstacle);
      expectSame(correlation.coefficient, expected[kind].coefficient, 4e-16);
      expectSame(correlation.oneTailed, expected[kind].oneTailed, 1e-13);
    }
    expectSame(all.matrices[0].at(0, 1).crossProduct, row.crossProduct, 4e-16);
  }
}

int signOf(double value) {
  return (value > 0) - (value < 0);
}

double scoreOf(const Values& x, const Values& y) {
  int score = 0;
  for (std::size_t i = 0; i < x.size(); ++i) {
    for (std::size_t j = 0; j < i; ++j) {
      score += signOf(x[i] - x[j]) * signOf(y[i] - y[j]);
    }
  }
  return score;
}

// The variance of the score over all orders of y: what the formula with its corrections for ties stands for.
double varianceOverPermutations(const Values& x, Values y) {
  std::vector<std::size_t> order(x.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  double squares = 0;
  double count = 0;
  do {
    Values shuffled;
    for (const std::size_t place : order) {
      shuffled.push_back(y[place]);
    }
    const double score = scoreOf(x, shuffled);
    squares += score * score;
    ++count;
  } while (std::ranges::next_permutation(order).found);
  return squares / count;
}

Values randomValues(std::mt19937& random, std::size_t count, unsigned different, unsigned missingIn = 0) {
  Values values(count);
  for (double& value : values) {
    value = missingIn > 0 && draw(random, missingIn) == 0 ? kNone : draw(random, different);
  }
  return values;
}

TEST(Correlation, KendallAgreesWithItsDefinition) {
  std::mt19937 random(20);
  for (int turn = 0; turn < 300; ++turn) {
    SCOPED_TRACE(turn);
    // Few cases to permute, or more than one run of the merge sort.
    const bool small = turn % 3 != 0;
    const std::size_t count = small ? 2 + draw(random, 4) : 6 + draw(random, 60);
    const Values x = randomValues(random, count, 2 + draw(random, 40));
    const Values y = randomValues(random, count, 2 + draw(random, 40));
    const double score = scoreOf(x, y);
    const double differ = std::sqrt(scoreOf(x, x) * scoreOf(y, y));
    const Correlation kendall = AllMatrices({x, y}).matrices[2].at(0, 1);
    expectSame(kendall.coefficient, differ > 0 ? score / differ : kNone, 1e-15);
    if (!small || differ == 0) continue;
    const double z = score / std::sqrt(varianceOverPermutations(x, y));
    expectSame(kendall.oneTailed, std::erfc(std::abs(z) / std::sqrt(2)) / 2, 1e-13);
  }
}

// In a table of two by two tau-b is (ad - bc) / √(r1 r2 c1 c2), and its square times n - 1 is z².
TEST(Correlation, CountsOfPairsDoNotOverflow) {
  const double a = 30'400, b = 29'900, c = 29'700, d = 30'000;
  Values x, y;
  for (const auto& [count, valueOfX, valueOfY] : {std::tuple{a, 1, 1}, {b, 1, 2}, {c, 2, 1}, {d, 2, 2}}) {
    x.insert(x.end(), static_cast<std::size_t>(count), valueOfX);
    y.insert(y.end(), static_cast<std::size_t>(count), valueOfY);
  }
  const double tau = (a * d - b * c) / std::sqrt((a + b) * (c + d)) / std::sqrt((a + c) * (b + d));
  const Correlation kendall =
      kendallTauB(rankVariable(x), rankVariable(y), std::vector<bool>(x.size(), true));
  expectSame(kendall.coefficient, tau, 1e-14);
  expectSame(kendall.oneTailed, std::erfc(tau * std::sqrt((a + b + c + d - 1) / 2)) / 2, 1e-12);
}

TEST(Correlation, EachPairHasItsOwnCasesUnlessListwise) {
  std::mt19937 random(5);
  for (int turn = 0; turn < 20; ++turn) {
    std::vector<Values> variables;
    for (const unsigned missingIn : {0U, 3U, 0U, 4U, 9U}) {
      variables.push_back(randomValues(random, 30, 12, missingIn));
    }
    variables.push_back(variables[1]);  // the same cases are missing
    std::ranges::replace(variables.back(), 3.0, 5.0);
    std::vector<Values> complete(variables.size());
    for (std::size_t i = 0; i < variables.front().size(); ++i) {
      if (std::ranges::any_of(variables, [i](const Values& values) { return std::isnan(values[i]); }))
        continue;
      for (std::size_t j = 0; j < variables.size(); ++j) {
        complete[j].push_back(variables[j][i]);
      }
    }
    const AllMatrices pairwise(variables);
    const AllMatrices listwise(variables, Deletion::Listwise);
    for (std::size_t row = 0; row < variables.size(); ++row) {
      for (std::size_t column = 0; column < variables.size(); ++column) {
        SCOPED_TRACE(std::to_string(turn) + ": " + std::to_string(row) + ", " + std::to_string(column));
        const bool self = row == column;
        const AllMatrices alone({variables[row], variables[column]});
        const AllMatrices aloneComplete({complete[row], complete[column]});
        for (std::size_t kind = 0; kind < 3; ++kind) {
          const auto compare = [&](const Correlation& actual, const Correlation& expected) {
            EXPECT_EQ(actual.caseCount, expected.caseCount);
            expectSame(actual.coefficient, expected.coefficient.value_or(kNone), 1e-15);
            expectSame(actual.oneTailed, self ? kNone : expected.oneTailed.value_or(kNone), 1e-13);
          };
          compare(pairwise.matrices[kind].at(row, column), alone.matrices[kind].at(0, 1));
          compare(listwise.matrices[kind].at(row, column), aloneComplete.matrices[kind].at(0, 1));
        }
      }
    }
  }
}

// Whole numbers on a large mean, whose cross-products 64-bit integers hold after a shift.
TEST(Correlation, CrossProductsKeepThirtyDigits) {
  std::mt19937 random(3);
  const std::vector<double> means = {1e15, -3, 7e9};
  std::vector<Values> variables(means.size(), Values(1000));
  std::vector<std::int64_t> sums(3), products(9);
  std::int64_t count = 0;
  for (std::size_t i = 0; i < 1000; ++i) {
    std::vector<std::int64_t> shifted;
    for (std::size_t j = 0; j < means.size(); ++j) {
      shifted.push_back(draw(random, 10'000));
      variables[j][i] = means[j] + static_cast<double>(shifted.back());
    }
    if (draw(random, 5) == 0) {
      variables[draw(random, 3)][i] = kNone;
      continue;
    }
    ++count;
    for (std::size_t j = 0; j < 9; ++j) {
      products[j] += shifted[j / 3] * shifted[j % 3];
    }
    for (std::size_t j = 0; j < 3; ++j) {
      sums[j] += shifted[j];
    }
  }
  const CrossProducts actual =
      computeCrossProducts(std::vector<std::span<const double>>(variables.begin(), variables.end()));
  const auto n = static_cast<double>(count);
  ASSERT_EQ(actual.caseCount, static_cast<std::size_t>(count));
  for (std::size_t j = 0; j < 9; ++j) {
    const std::int64_t expected = count * products[j] - sums[j / 3] * sums[j % 3];
    // Two doubles hold the integer, which has more than 53 bits.
    const auto high = static_cast<double>(expected);
    const DoubleDouble exact =
        exactSum(high, static_cast<double>(expected - static_cast<std::int64_t>(high)));
    const double error = (actual.sum(j / 3, j % 3) * DoubleDouble{n, 0} - exact).value();
    EXPECT_LE(std::abs(error), 1e-27 * static_cast<double>(count * products[j])) << j;
  }
}

}  // namespace
}  // namespace genostat::standalone
