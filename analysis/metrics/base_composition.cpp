#include "analysis/metrics/base_composition.h"

#include <algorithm>
#include <string_view>

namespace genostat::analysis {

namespace {

// Counts fit into one byte for so many characters: the compiler then counts a whole vector at once.
constexpr std::size_t kBaseBlock = 255;

}  // namespace

std::optional<double> BaseSummary::gcPercent() const {
  if (gc + at == 0) return std::nullopt;
  return 100.0 * static_cast<double>(gc) / static_cast<double>(gc + at);
}

void BaseComposition::add(std::span<const Record> batch) {
  for (const Record& record : batch) {
    for (std::string_view rest = record.sequence; !rest.empty();) {
      const std::string_view block = rest.substr(0, kBaseBlock);
      unsigned char gc = 0;
      unsigned char at = 0;
      for (const char c : block) {
        const char lower = static_cast<char>(c | 0x20);
        gc = static_cast<unsigned char>(gc + ((lower == 'g') | (lower == 'c')));
        at = static_cast<unsigned char>(at + ((lower == 'a') | (lower == 't')));
      }
      counts_.gc += gc;
      counts_.at += at;
      rest.remove_prefix(block.size());
    }
  }
}

}  // namespace genostat::analysis
