#include "analysis/metrics/quality_level.h"

#include <algorithm>
#include <string_view>

namespace genostat::analysis {

namespace {

// A sum of so many characters fits into two bytes, which lets the compiler add a whole vector at once.
constexpr std::size_t kQualityBlock = 512;

}  // namespace

std::optional<double> QualitySummary::meanPhred() const {
  if (characters == 0) return std::nullopt;
  return static_cast<double>(sum) / static_cast<double>(characters) - offset();
}

void QualityLevel::add(std::span<const Record> batch) {
  for (const Record& record : batch) {
    counts_.characters += record.quality.size();
    for (std::string_view rest = record.quality; !rest.empty();) {
      const std::string_view block = rest.substr(0, kQualityBlock);
      std::uint16_t sum = 0;
      unsigned char lowest = counts_.lowest;
      for (const char c : block) {
        const auto code = static_cast<unsigned char>(c);
        sum = static_cast<std::uint16_t>(sum + code);
        lowest = std::min(lowest, code);
      }
      counts_.sum += sum;
      counts_.lowest = lowest;
      rest.remove_prefix(block.size());
    }
  }
}

}  // namespace genostat::analysis
