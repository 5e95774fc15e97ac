// Ranks two columns and correlates them, as NONPAR CORR does: rank_correlation FILE KIND. The file holds the
// columns one after the other as the machine writes doubles; the kind is spearman, kendall or both. Prints
// the seconds and the processor's seconds, without those of reading the file, and each coefficient.
#include <chrono>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <exception>
#include <fstream>
#include <iterator>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "standalone/statistics/rank_correlation.h"

namespace genostat::standalone {
namespace {

std::vector<double> readColumns(const char* path) {
  std::ifstream file(path, std::ios::binary);
  const std::string bytes(std::istreambuf_iterator<char>(file), {});
  std::vector<double> values(bytes.size() / sizeof(double));
  if (values.empty()) throw std::runtime_error("the file holds no columns");
  std::memcpy(values.data(), bytes.data(), values.size() * sizeof(double));
  return values;
}

void measure(std::span<const double> values, const std::string& kind) {
  const std::vector<std::span<const double>> columns = {values.first(values.size() / 2),
                                                        values.last(values.size() / 2)};
  std::vector<double> coefficients;
  const std::clock_t startOfWork = std::clock();
  const auto start = std::chrono::steady_clock::now();
  const RankCorrelation ranks(columns, Deletion::Pairwise);
  if (kind != "kendall") coefficients.push_back(ranks.spearman().at(0, 1).coefficient.value());
  if (kind != "spearman") coefficients.push_back(ranks.kendall().at(0, 1).coefficient.value());
  const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
  const double worked = static_cast<double>(std::clock() - startOfWork) / CLOCKS_PER_SEC;
  std::printf("%.6f %.6f", elapsed.count(), worked);
  for (const double coefficient : coefficients) {
    std::printf(" %.17g", coefficient);
  }
  std::puts("");
}

}  // namespace
}  // namespace genostat::standalone

int main(int argc, char** argv) {
  try {
    if (argc != 3) throw std::invalid_argument("usage: rank_correlation FILE spearman|kendall|both");
    genostat::standalone::measure(genostat::standalone::readColumns(argv[1]), argv[2]);
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "rank_correlation: %s\n", error.what());
    return 1;
  }
}
