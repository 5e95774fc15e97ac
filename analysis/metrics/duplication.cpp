#include "analysis/metrics/duplication.h"

#include <algorithm>
#include <array>
#include <map>
#include <string_view>
#include <utility>

#include "analysis/metrics/sums.h"

namespace genostat::analysis {

namespace {

constexpr std::array<std::uint64_t, 16> kLevels = {1, 2,  3,  4,   5,   6,    7,    8,
                                                   9, 10, 51, 101, 501, 1001, 5001, 10'001};

// The probability that a key of `level` reads has none among the first `limit` of `reads`: the product of
// (reads - i - level) / (reads - i) for i below `limit`. Numerators and denominators that are equal cancel,
// which leaves (reads - limit - j) / (reads - j) for j below `level`; the shorter product is taken. 0 as soon
// as it falls below `negligible`; as no factor exceeds 1, it does not matter in which order they come.
double missProbability(std::uint64_t level, std::uint64_t reads, std::uint64_t limit, double negligible) {
  if (level > reads - limit) return 0;
  const std::uint64_t factors = std::min(level, limit);
  const std::uint64_t missing = std::max(level, limit);
  double product = 1;
  for (std::uint64_t i = 0; i < factors; ++i) {
    product *= static_cast<double>(reads - i - missing) / static_cast<double>(reads - i);
    if (product < negligible) return 0;
  }
  return product;
}

// How many keys of this level there are likely to be when so many were collected.
double correctedKeys(std::uint64_t level, std::uint64_t keys, const DuplicationCounts& counts) {
  const auto observed = static_cast<double>(keys);
  // The second: too few reads are left for as many keys again.
  if (counts.limit == counts.reads || counts.reads - keys < counts.limit) return observed;
  // A probability that would not even add a hundredth of a key.
  const double negligible = 1 - observed / (observed + 0.01);
  return observed / (1 - missProbability(level, counts.reads, counts.limit, negligible));
}

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

DuplicationSummary estimateDuplication(const DuplicationCounts& counts) {
  std::map<std::uint64_t, std::uint64_t> keysByLevel;
  for (const auto& [key, reads] : counts.keys) {
    ++keysByLevel[reads];
  }
  DuplicationSummary summary;
  for (const std::uint64_t from : kLevels) {
    summary.levels.push_back({.from = from});
  }
  double allKeys = 0;
  double allReads = 0;
  for (const auto& [level, keys] : keysByLevel) {
    const double corrected = correctedKeys(level, keys, counts);
    const double reads = corrected * static_cast<double>(level);
    const auto above = std::upper_bound(kLevels.begin(), kLevels.end(), level) - kLevels.begin();
    DuplicationLevel& bucket = summary.levels[static_cast<std::size_t>(above) - 1];
    bucket.distinctPercent += corrected;
    bucket.readsPercent += reads;
    allKeys += corrected;
    allReads += reads;
  }
  if (allReads == 0) return summary;
  summary.deduplicatedPercent = 100 * allKeys / allReads;
  for (DuplicationLevel& bucket : summary.levels) {
    bucket.distinctPercent *= 100 / allKeys;
    bucket.readsPercent *= 100 / allReads;
  }
  return summary;
}

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
    const double percent = percentOf(reads, counts.reads);
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
