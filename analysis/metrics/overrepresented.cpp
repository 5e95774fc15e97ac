#include "analysis/metrics/overrepresented.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace genostat::analysis {

namespace {

constexpr double kListedPercent = 0.1;

bool holds(std::string_view sequence, std::string_view probe) {
  if (probe.find('N') == std::string_view::npos) return sequence.find(probe) != std::string_view::npos;
  const auto matches = [](char base, char wanted) {
    return base == wanted ||
           (wanted == 'N' && std::string_view("ACGTN").find(base) != std::string_view::npos);
  };
  return std::search(sequence.begin(), sequence.end(), probe.begin(), probe.end(), matches) != sequence.end();
}

}  // namespace

std::vector<OverrepresentedSequence> overrepresentedSequences(const DuplicationCounts& counts,
                                                              const std::vector<Probe>& probes) {
  // What was asked for goes before what is known.
  std::vector<Probe> origins = probes;
  for (Probe& known : probesOf({})) {
    const auto isKnown = [&](const Probe& other) { return other.name == known.name; };
    if (std::none_of(probes.begin(), probes.end(), isKnown)) origins.push_back(std::move(known));
  }

  std::vector<OverrepresentedSequence> found;
  for (const auto& [key, reads] : counts.keys) {
    const double percent = 100.0 * static_cast<double>(reads) / static_cast<double>(counts.reads);
    if (!(percent > kListedPercent)) continue;
    const auto origin = std::find_if(origins.begin(), origins.end(), [&sequence = key](const Probe& probe) {
      return holds(sequence, probe.sequence);
    });
    found.push_back({std::string(key), reads, percent, origin == origins.end() ? "" : origin->name});
  }
  std::stable_sort(found.begin(), found.end(),
                   [](const auto& a, const auto& b) { return a.reads > b.reads; });
  return found;
}

}  // namespace genostat::analysis
