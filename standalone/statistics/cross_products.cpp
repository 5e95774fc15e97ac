// Two passes, the second over deviations from the rounded means. What the rounding leaves over
// is known, Σ(x - m), and taken off the sums: T. F. Chan, G. H. Golub, R. J. LeVeque,
// "Algorithms for computing the sample variance", The American Statistician 37 (1983) 242-247.
//
// Cases are taken in blocks. Within a block a scalar product runs in a few lanes side by side,
// each a sum in two doubles whose low part is added up plainly: T. Ogita, S. M. Rump, S. Oishi,
// "Accurate sum and dot product", SIAM J. Sci. Comput. 26 (2005) 1955-1988, algorithm Dot2.
// Lanes and blocks are added as numbers of 32 digits, so that no error grows with the cases.

#include "standalone/statistics/cross_products.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace genostat::standalone {

namespace {

using Variables = std::span<const std::span<const double>>;

constexpr std::size_t kBlockCases = 128;
constexpr std::size_t kLanes = 4;

// One variable's numbers of 32 digits in one block, the high parts also split for exact products.
struct SplitBlock {
  std::array<double, kBlockCases> high, top, rest, low;

  void set(std::size_t i, const DoubleDouble& number) {
    constexpr double kSplit = 134217729;  // 2^27 + 1, as in exactProduct
    const double spread = kSplit * number.high;
    high[i] = number.high;
    top[i] = spread - (spread - number.high);
    rest[i] = number.high - top[i];
    low[i] = number.low;
  }
};

// `count` is a multiple of kLanes; the arithmetic of a lane is exactProduct and exactSum.
DoubleDouble scalarProduct(const SplitBlock& a, const SplitBlock& b, std::size_t count) {
  std::array<double, kLanes> sums{};
  std::array<double, kLanes> lost{};
  for (std::size_t begin = 0; begin < count; begin += kLanes) {
    for (std::size_t lane = 0; lane < kLanes; ++lane) {
      const std::size_t i = begin + lane;
      const double product = a.high[i] * b.high[i];
      const double productLow =
          ((a.top[i] * b.top[i] - product) + a.top[i] * b.rest[i] + a.rest[i] * b.top[i]) +
          a.rest[i] * b.rest[i];
      const double sum = sums[lane] + product;
      const double part = sum - sums[lane];
      const double sumLow = (sums[lane] - (sum - part)) + (product - part);
      lost[lane] += sumLow + (productLow + (a.high[i] * b.low[i] + a.low[i] * b.high[i]));
      sums[lane] = sum;
    }
  }
  DoubleDouble total;
  for (std::size_t lane = 0; lane < kLanes; ++lane) {
    total = total + exactSum(sums[lane], lost[lane]);
  }
  return total;
}

const SplitBlock& blockOfOnes() {
  static const SplitBlock kOnes = [] {
    SplitBlock ones;
    for (std::size_t i = 0; i < kBlockCases; ++i) {
      ones.set(i, {1, 0});
    }
    return ones;
  }();
  return kOnes;
}

// The cases of a block that count.
struct CompleteCases {
  std::array<std::size_t, kBlockCases> numbers{};
  std::size_t count = 0;
};

CompleteCases completeCasesFrom(Variables variables, std::size_t begin, std::size_t end) {
  std::array<bool, kBlockCases> complete{};
  complete.fill(true);
  for (const std::span<const double> variable : variables) {
    for (std::size_t i = begin; i < end; ++i) {
      complete[i - begin] &= !std::isnan(variable[i]);
    }
  }
  CompleteCases cases;
  for (std::size_t i = begin; i < end; ++i) {
    if (complete[i - begin]) cases.numbers[cases.count++] = i;
  }
  return cases;
}

// Calls `use` with each block's deviations [variable] from `centres` and their count, which zeros
// fill up to whole lanes. Returns the number of cases.
template <typename Use>
std::size_t forEachBlock(Variables variables, const std::vector<double>& centres, Use use) {
  const std::size_t cases = variables.empty() ? 0 : variables.front().size();
  std::vector<SplitBlock> blocks(variables.size());
  std::size_t total = 0;
  for (std::size_t begin = 0; begin < cases; begin += kBlockCases) {
    const CompleteCases complete = completeCasesFrom(variables, begin, std::min(cases, begin + kBlockCases));
    const std::size_t padded = (complete.count + kLanes - 1) / kLanes * kLanes;
    for (std::size_t j = 0; j < variables.size(); ++j) {
      for (std::size_t i = 0; i < complete.count; ++i) {
        blocks[j].set(i, exactSum(variables[j][complete.numbers[i]], -centres[j]));
      }
      for (std::size_t i = complete.count; i < padded; ++i) {
        blocks[j].set(i, {});
      }
    }
    use(blocks, padded);
    total += complete.count;
  }
  return total;
}

}  // namespace

CrossProducts computeCrossProducts(Variables variables) {
  const std::size_t k = variables.size();
  CrossProducts products{k, 0, std::vector<DoubleDouble>(k), std::vector<DoubleDouble>(k * k)};
  using Blocks = std::vector<SplitBlock>;
  const auto addSums = [k](std::vector<DoubleDouble>& sums, const Blocks& blocks, std::size_t count) {
    for (std::size_t j = 0; j < k; ++j) {
      sums[j] = sums[j] + scalarProduct(blocks[j], blockOfOnes(), count);
    }
  };
  std::vector<double> centres(k);
  products.caseCount = forEachBlock(variables, centres, [&](const Blocks& blocks, std::size_t count) {
    addSums(products.means, blocks, count);
  });
  if (products.caseCount == 0) return products;
  const auto n = static_cast<double>(products.caseCount);
  for (std::size_t j = 0; j < k; ++j) {
    products.means[j] = products.means[j] / n;
    centres[j] = products.means[j].high;
  }

  std::vector<DoubleDouble> rests(k);  // Σ(x - centre)
  forEachBlock(variables, centres, [&](const Blocks& blocks, std::size_t count) {
    addSums(rests, blocks, count);
    for (std::size_t row = 0; row < k; ++row) {
      for (std::size_t column = row; column < k; ++column) {
        DoubleDouble& sum = products.sums[row * k + column];
        sum = sum + scalarProduct(blocks[row], blocks[column], count);
      }
    }
  });
  for (std::size_t row = 0; row < k; ++row) {
    for (std::size_t column = row; column < k; ++column) {
      DoubleDouble& sum = products.sums[row * k + column];
      sum = sum - rests[row] * rests[column] / n;
      products.sums[column * k + row] = sum;
    }
  }
  return products;
}

}  // namespace genostat::standalone
