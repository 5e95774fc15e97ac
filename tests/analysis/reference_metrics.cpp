#include "tests/analysis/reference_metrics.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <numeric>
#include <regex>

namespace genostat::analysis {

namespace {

constexpr double kNothing = std::numeric_limits<double>::quiet_NaN();

std::string upperCase(std::string text) {
  for (char& c : text) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return text;
}

unsigned code(char quality) {
  return static_cast<unsigned char>(quality);
}

// Fields between colons, as many as there are up to the last one that is not empty.
std::vector<std::string> fieldsOf(const std::string& header) {
  std::vector<std::string> fields(1);
  for (const char c : header) {
    if (c == ':') {
      fields.emplace_back();
    } else {
      fields.back() += c;
    }
  }
  while (fields.size() > 1 && fields.back().empty()) {
    fields.pop_back();
  }
  return fields;
}

void countTiles(ReferenceCounts& counts, const std::vector<ReferenceRead>& reads) {
  const std::regex integer("[+-]?[0-9]{1,18}");
  std::uint64_t filled = 0;
  std::size_t field = 0;
  for (const ReferenceRead& read : reads) {
    if (read.sequence.empty()) continue;
    ++filled;
    const std::vector<std::string> fields = fieldsOf(read.header);
    if (filled == 1) field = fields.size() >= 7 ? 4 : fields.size() >= 5 ? 2 : 1'000'000;
    if (filled > 10'000 && filled % 10 != 0) continue;
    long long tile = 0;
    const bool readable = field < fields.size() && std::regex_match(fields[field], integer);
    if (readable) tile = std::stoll(fields[field]);
    if (!readable || tile < -2147483648LL || tile > 2147483647LL) {
      counts.tiles.clear();
      return;
    }
    auto& positions = counts.tiles[static_cast<int>(tile)];
    positions.resize(std::max(positions.size(), read.quality.size()));
    for (std::size_t i = 0; i < read.quality.size(); ++i) {
      positions[i].push_back(code(read.quality[i]));
    }
  }
  if (counts.tiles.size() > 2501) counts.tiles.clear();
}

bool standsAt(const std::string& probe, const std::string& sequence, std::size_t offset) {
  for (std::size_t i = 0; i < probe.size(); ++i) {
    const char base = sequence[offset + i];
    const bool anyBase = probe[i] == 'N' && std::string("ACGTN").find(base) != std::string::npos;
    if (base != probe[i] && !anyBase) return false;
  }
  return true;
}

// Groups by number, from 0.
std::uint64_t groupOf(std::uint64_t position, std::uint64_t longest) {
  if (longest <= 75 || position < 10) return position - 1;
  for (const std::uint64_t width : {2U, 5U, 10U, 20U, 50U, 100U, 200U, 500U, 1000U, 2000U, 5000U, 10'000U}) {
    if (9 + std::ceil(static_cast<double>(longest - 9) / static_cast<double>(width)) >= 75) continue;
    return 9 + (width <= 10 ? (position - 10) / width : position / width);
  }
  ADD_FAILURE() << "no groups for " << longest;
  return 0;
}

// The mean of the values of each group's positions, of those that have one; `empty` for a group without.
std::vector<double> groupMeans(const std::vector<double>& byPosition, std::uint64_t longest, double empty) {
  std::map<std::uint64_t, std::vector<double>> values;
  for (std::uint64_t i = 0; i < longest; ++i) {
    std::vector<double>& group = values[groupOf(i + 1, longest)];
    if (i < byPosition.size() && !std::isnan(byPosition[i])) group.push_back(byPosition[i]);
  }
  std::vector<double> means;
  for (const auto& [group, members] : values) {
    double sum = 0;
    for (const double value : members) {
      sum += value;
    }
    means.push_back(members.empty() ? empty : sum / static_cast<double>(members.size()));
  }
  return means;
}

std::vector<unsigned> sortedCodes(const std::array<std::uint64_t, kQualityCodes>& counts) {
  std::vector<unsigned> codes;
  for (unsigned i = 0; i < kQualityCodes; ++i) {
    codes.insert(codes.end(), counts[i], i);
  }
  return codes;
}

double median(const std::vector<unsigned>& sorted) {
  if (sorted.empty()) return kNothing;
  return (sorted[(sorted.size() - 1) / 2] + sorted[sorted.size() / 2]) / 2.0;
}

double largest(const std::vector<double>& values) {
  double most = 0;
  for (const double value : values) {
    if (std::abs(value) > most) most = std::abs(value);
  }
  return most;
}

std::string judged(bool fail, bool warn) {
  return fail ? "fail" : warn ? "warn" : "pass";
}

std::string judgedAbove(double value, double warn, double fail) {
  return judged(value > fail, value > warn);
}

std::string judgeQuality(const ReferenceCounts& counts, int offset) {
  std::vector<double> quartiles(counts.positions.size(), kNothing), medians = quartiles;
  for (std::size_t i = 0; i < counts.positions.size(); ++i) {
    const std::vector<unsigned> codes = sortedCodes(counts.positions[i].qualities);
    if (codes.size() <= 100) continue;
    quartiles[i] = static_cast<double>(codes[codes.size() * 25 / 100 - 1]) - offset;
    medians[i] = static_cast<double>(codes[codes.size() * 50 / 100 - 1]) - offset;
  }
  bool warn = false, fail = false;
  for (const double q : groupMeans(quartiles, quartiles.size(), 99)) {
    warn |= q < 10;
    fail |= q < 5;
  }
  for (const double q : groupMeans(medians, medians.size(), 99)) {
    warn |= q < 25;
    fail |= q < 20;
  }
  return judged(fail, warn);
}

std::string judgeMeans(const std::vector<unsigned>& sorted, int offset) {
  std::map<unsigned, std::size_t> counts;
  for (const unsigned mean : sorted) {
    ++counts[mean];
  }
  const auto mode = std::max_element(counts.begin(), counts.end(),
                                     [](const auto& a, const auto& b) { return a.second < b.second; });
  const int phred = static_cast<int>(mode->first) - offset;
  return judged(phred <= 20, phred <= 27);
}

double gcStatistic(const ReferenceCounts& counts) {
  std::vector<double> d(101);
  for (const auto& [read, number] : counts.gc) {
    const auto n = static_cast<double>(read.first);
    const auto low = [&](double g) { return std::floor(std::max(g - 0.5, 0.0) * 100 / n + 0.5); };
    const auto high = [&](double g) { return std::floor(std::min(g + 0.5, n) * 100 / n + 0.5); };
    const auto g = static_cast<double>(read.second);
    for (double percent = low(g); percent <= high(g); ++percent) {
      int claims = 0;
      for (double other = 0; other <= n; ++other) {
        claims += low(other) <= percent && percent <= high(other);
      }
      for (std::uint64_t i = 0; i < number; ++i) {
        d[static_cast<std::size_t>(percent)] += 1.0 / claims;
      }
    }
  }
  double total = 0;
  int maximum = 0;
  for (int i = 0; i <= 100; ++i) {
    total += d[static_cast<std::size_t>(i)];
    if (d[static_cast<std::size_t>(i)] > d[static_cast<std::size_t>(maximum)]) maximum = i;
  }
  const auto near = [&](int i) {
    return d[static_cast<std::size_t>(i)] > 0.9 * d[static_cast<std::size_t>(maximum)];
  };
  double visited = 0, sum = 0, mode = maximum;
  int up = maximum, down = maximum - 1;
  for (; up <= 100 && near(up); ++up, ++visited) {
    sum += up;
  }
  for (; down >= 0 && near(down); --down, ++visited) {
    sum += down;
  }
  if (up <= 100 && down >= 0) mode = sum / visited;
  double squares = 0, differences = 0;
  for (int i = 0; i <= 100; ++i) {
    squares += std::pow(i - mode, 2) * d[static_cast<std::size_t>(i)];
  }
  const double sd = std::sqrt(squares / (total - 1));
  for (int i = 0; i <= 100; ++i) {
    const double density =
        1 / std::sqrt(2 * std::numbers::pi * sd * sd) * std::exp(-std::pow(i - mode, 2) / (2 * sd * sd));
    differences += std::abs(density * total - d[static_cast<std::size_t>(i)]);
  }
  return 100 * differences / total;
}

std::string judgeAdapters(const ReferenceCounts& counts, std::uint64_t longest) {
  if (longest <= 12) return "warn";
  double most = 0;
  for (const auto& offsets : counts.adapters) {
    std::vector<double> percent(longest - 11);
    for (const auto& [offset, reads] : offsets) {
      for (std::size_t i = offset; i < percent.size(); ++i) {
        percent[i] += 100.0 * static_cast<double>(reads) / static_cast<double>(counts.duplication.reads);
      }
    }
    most = std::max(most, largest(groupMeans(percent, percent.size(), 0)));
  }
  return judgedAbove(most, 5, 10);
}

std::string judgeTiles(const ReferenceCounts& counts, int offset) {
  if (counts.tiles.empty()) return "";
  std::uint64_t longest = 0;
  for (const auto& [tile, positions] : counts.tiles) {
    longest = std::max<std::uint64_t>(longest, positions.size());
  }
  std::vector<std::vector<double>> tiles;
  for (const auto& [tile, positions] : counts.tiles) {
    std::vector<double> means;
    for (const std::vector<std::uint64_t>& codes : positions) {
      double sum = 0;
      for (const std::uint64_t one : codes) {
        sum += static_cast<double>(one);
      }
      means.push_back(sum / static_cast<double>(codes.size()) - offset);
    }
    tiles.push_back(groupMeans(means, longest, 0));
  }
  double most = 0;
  for (std::size_t group = 0; group < tiles.front().size(); ++group) {
    double sum = 0;
    for (const auto& tile : tiles) {
      sum += tile[group];
    }
    for (const auto& tile : tiles) {
      most = std::max(most, std::abs(tile[group] - sum / static_cast<double>(tiles.size())));
    }
  }
  return judgedAbove(most, 5, 10);
}

}  // namespace

ReferenceCounts referenceCounts(const std::vector<ReferenceRead>& reads, const Adapter& adapter,
                                std::size_t maxKeys) {
  ReferenceCounts counts;
  const std::vector<Probe> probes = probesOf(adapter);
  counts.adapters.resize(probes.size());
  std::map<std::string, std::size_t>& places = counts.keyPlaces;
  std::size_t longest = 0;  // of the reads longer than a probe so far
  for (const ReferenceRead& read : reads) {
    const std::string sequence = upperCase(read.sequence);
    const std::size_t length = sequence.size();
    ++counts.lengths[length];

    if (counts.positions.size() < length) counts.positions.resize(length);
    std::uint64_t sum = 0, changes = 0;
    for (std::size_t i = 0; i < length; ++i) {
      const std::size_t base = std::string("ACGTN").find(sequence[i]);
      ++counts.positions[i].bases[base == std::string::npos ? kBaseOther : base];
      ++counts.positions[i].qualities[code(read.quality[i])];
      if (i + 10 >= length) ++counts.lastQualities[code(read.quality[i])];
      sum += code(read.quality[i]);
      if (i + 1 < length && sequence[i] != sequence[i + 1]) ++changes;
    }
    if (length > 0) ++counts.meanQualities[sum / length];
    if (length > 1 && static_cast<double>(changes) / static_cast<double>(length - 1) < 0.3) {
      ++counts.lowComplexityReads;
    }

    const std::size_t unit = length > 1000 ? 1000 : length > 100 ? 100 : 1;
    const std::string part = sequence.substr(0, length / unit * unit);
    const auto gc = std::count_if(part.begin(), part.end(), [](char c) { return c == 'G' || c == 'C'; });
    if (!part.empty()) ++counts.gc[{part.size(), static_cast<std::uint64_t>(gc)}];

    if (length > 12) longest = std::max(longest, length);
    for (std::size_t probe = 0; probe < probes.size(); ++probe) {
      const std::string& wanted = probes[probe].sequence;
      std::size_t offset = 0;
      while (offset + wanted.size() <= length && !standsAt(wanted, sequence, offset)) {
        ++offset;
      }
      if (offset + wanted.size() <= length && offset + 12 <= longest) ++counts.adapters[probe][offset];
    }

    DuplicationCounts& duplication = counts.duplication;
    ++duplication.reads;
    const bool open = duplication.keys.size() < maxKeys;
    const std::string key = sequence.substr(0, 50);
    if (open && !places.contains(key)) {
      const auto entry = places.emplace(key, duplication.keys.size()).first;
      duplication.keys.emplace_back(entry->first, 0);
    }
    if (places.contains(key)) ++duplication.keys[places[key]].second;
    if (open) duplication.limit = duplication.reads;
  }
  countTiles(counts, reads);
  return counts;
}

double referenceDeduplicated(const DuplicationCounts& counts) {
  const auto n = static_cast<double>(counts.reads);
  const auto limit = static_cast<double>(counts.limit);
  std::map<double, double> levels;
  for (const auto& [key, reads] : counts.keys) {
    ++levels[static_cast<double>(reads)];
  }
  double keys = 0, reads = 0;
  for (const auto& [d, o] : levels) {
    double corrected = o;
    if (limit != n && n - o >= limit) {
      double p = 1;
      for (double i = 0; i < limit; ++i) {
        p *= ((n - i) - d) / (n - i);
        if (p < 1 - o / (o + 0.01)) {
          p = 0;
          break;
        }
      }
      corrected = o / (1 - p);
    }
    keys += corrected;
    reads += corrected * d;
  }
  return reads == 0 ? 100 : 100 * keys / reads;
}

ReferenceValues referenceValues(const ReferenceCounts& counts) {
  ReferenceValues values;
  PositionCounts all;
  std::array<std::uint64_t, kQualityCodes> first{};
  for (std::size_t i = 0; i < counts.positions.size(); ++i) {
    for (std::size_t base = 0; base < kBaseCount; ++base) {
      all.bases[base] += counts.positions[i].bases[base];
    }
    for (std::size_t c = 0; c < kQualityCodes; ++c) {
      all.qualities[c] += counts.positions[i].qualities[c];
      if (i < 10) first[c] += counts.positions[i].qualities[c];
    }
  }
  const std::vector<unsigned> codes = sortedCodes(all.qualities);
  const int offset = !codes.empty() && codes.front() >= 64 ? 64 : 33;
  double sum = 0;
  for (const unsigned one : codes) {
    sum += one;
  }
  const auto [a, c, g, t, n, other] = all.bases;
  const auto reads = static_cast<double>(counts.duplication.reads);
  values.gc = 100 * static_cast<double>(g + c) / static_cast<double>(a + c + g + t);
  values.meanPhred = sum / static_cast<double>(codes.size()) - offset;
  values.medianPhredFirst = median(sortedCodes(first)) - offset;
  values.medianPhredLast = median(sortedCodes(counts.lastQualities)) - offset;
  values.lowComplexity = 100 * static_cast<double>(counts.lowComplexityReads) / reads;
  values.unexpected = 100 * static_cast<double>(other) / static_cast<double>(codes.size());
  values.deduplicated = referenceDeduplicated(counts.duplication);

  bool frequent = false;
  for (const auto& [key, number] : counts.duplication.keys) {
    values.overrepresented += number * 1000 > counts.duplication.reads;
    frequent |= number * 100 > counts.duplication.reads;
  }
  const std::uint64_t shortest = counts.lengths.begin()->first;
  const std::uint64_t longest = counts.lengths.rbegin()->first;
  std::map<std::uint64_t, std::array<double, 6>> groups;
  double content = 0, unknown = 0;
  for (std::size_t i = 0; i < counts.positions.size(); ++i) {
    for (std::size_t base = 0; base < kBaseCount; ++base) {
      groups[groupOf(i + 1, longest)][base] += static_cast<double>(counts.positions[i].bases[base]);
    }
  }
  for (const auto& [group, bases] : groups) {
    const double known = bases[0] + bases[1] + bases[2] + bases[3];
    const auto share = [&](std::size_t base) { return bases[base] / std::max(known, 1.0) * 100; };
    content = std::max({content, std::abs(share(2) - share(1)), std::abs(share(0) - share(3))});
    unknown = std::max(unknown, 100 * bases[4] / (known + bases[4] + bases[5]));
  }
  values.verdicts = {"pass",
                     longest == 0 ? "" : judgeQuality(counts, offset),
                     longest == 0 ? "" : judgeMeans(sortedCodes(counts.meanQualities), offset),
                     judgedAbove(content, 10, 20),
                     judgedAbove(gcStatistic(counts), 15, 30),
                     judgedAbove(unknown, 5, 20),
                     judged(shortest == 0, shortest != longest),
                     judged(values.deduplicated < 50, values.deduplicated < 70),
                     judged(frequent, values.overrepresented > 0),
                     judgeAdapters(counts, longest),
                     judgeTiles(counts, offset)};
  return values;
}

void expectSameCounts(const SampleCounts& counts, const ReferenceCounts& reference) {
  using Pairs = std::vector<std::pair<std::uint64_t, std::uint64_t>>;
  EXPECT_EQ(counts.lengths.byLength(), Pairs(reference.lengths.begin(), reference.lengths.end()));
  EXPECT_EQ(counts.meanQualities, reference.meanQualities);
  EXPECT_EQ(counts.lastQualities, reference.lastQualities);
  EXPECT_EQ(counts.lowComplexityReads, reference.lowComplexityReads);
  GcCounts gc;
  for (const auto& [read, number] : reference.gc) {
    for (std::uint64_t i = 0; i < number; ++i) {
      gc.add(read.first, read.second);
    }
  }
  EXPECT_EQ(counts.gc.distribution(), gc.distribution());
  for (std::size_t probe = 0; probe < reference.adapters.size(); ++probe) {
    std::map<std::uint64_t, std::uint64_t> found;
    for (std::size_t offset = 0; offset < counts.adapters.byOffset(probe).size(); ++offset) {
      const std::uint64_t reads = counts.adapters.byOffset(probe)[offset];
      if (reads > 0) found[offset] = reads;
    }
    EXPECT_EQ(found, reference.adapters[probe]) << "probe " << probe;
  }
  const auto tiles = counts.tiles.tiles();
  EXPECT_EQ(tiles.size(), reference.tiles.size());
  for (const auto& [number, tile] : tiles) {
    ASSERT_TRUE(reference.tiles.contains(number)) << number;
    std::vector<std::uint64_t> sums;
    for (const auto& codes : reference.tiles.at(number)) {
      sums.push_back(std::accumulate(codes.begin(), codes.end(), std::uint64_t{0}));
    }
    EXPECT_EQ(tile->sums, sums) << "tile " << number;
  }
}

void expectSameDuplication(const DuplicationCounts& counts, const DuplicationCounts& reference) {
  EXPECT_EQ(counts.reads, reference.reads);
  EXPECT_EQ(counts.limit, reference.limit);
  EXPECT_EQ(counts.keys, reference.keys);
}

void expectSameValues(const SampleResult& result, const ReferenceValues& reference) {
  for (std::size_t i = 0; i < common::kChecks.size(); ++i) {
    EXPECT_EQ(common::verdictWord(result.verdicts[static_cast<Check>(i)]), reference.verdicts[i])
        << common::kChecks[i].column;
  }
  const auto expectNear = [](std::optional<double> value, double expected, const char* name) {
    EXPECT_EQ(value.has_value(), !std::isnan(expected)) << name;
    if (value) {
      EXPECT_NEAR(*value, expected, 1e-9) << name;
    }
  };
  expectNear(result.gcPercent, reference.gc, "gc");
  expectNear(result.meanPhred, reference.meanPhred, "mean");
  expectNear(result.medianPhredFirst, reference.medianPhredFirst, "first");
  expectNear(result.medianPhredLast, reference.medianPhredLast, "last");
  expectNear(result.unexpectedPercent, reference.unexpected, "unexpected");
  expectNear(result.lowComplexityPercent, reference.lowComplexity, "low complexity");
  expectNear(result.duplication.deduplicatedPercent, reference.deduplicated, "deduplicated");
  EXPECT_EQ(result.overrepresented.size(), reference.overrepresented);
}

}  // namespace genostat::analysis
