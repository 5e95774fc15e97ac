// From counts to figures and verdicts.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <random>
#include <set>

#include "analysis/metrics/summarise.h"
#include "tests/analysis/reference_metrics.h"

namespace genostat::analysis {
namespace {

using Random = std::mt19937;
using Reads = std::vector<ReferenceRead>;

// The counts of the reads in the form of the product, put together from two parts.
SampleCounts countsOf(const Reads& reads, const ReferenceCounts& reference) {
  const std::size_t probes = reference.adapters.size();
  std::array<SampleCounts, 2> parts = {SampleCounts(probes), SampleCounts(probes)};
  std::uint64_t turn = 0;
  const auto each = [&](std::uint64_t times, auto add) {
    for (std::uint64_t i = 0; i < times; ++i) {
      add(parts[++turn % 2]);
    }
  };
  for (const auto& [length, number] : reference.lengths) {
    each(number, [&, value = length](SampleCounts& part) { part.lengths.add(value); });
  }
  for (const auto& [read, number] : reference.gc) {
    each(number, [&, value = read](SampleCounts& part) { part.gc.add(value.first, value.second); });
  }
  for (std::size_t probe = 0; probe < probes; ++probe) {
    for (const auto& [offset, number] : reference.adapters[probe]) {
      each(number, [&, value = offset](SampleCounts& part) { part.adapters.add(probe, value); });
    }
  }
  std::uint64_t filled = 0;
  TileScheme scheme;
  for (const ReferenceRead& read : reads) {
    if (read.sequence.empty()) continue;
    if (++filled == 1) scheme = TileScheme(read.header);
    if (!tileSampled(filled)) continue;
    const std::optional<int> tile = scheme.tileOf(read.header);
    each(1, [&](SampleCounts& part) {
      if (tile) {
        part.tiles.add(*tile, read.quality);
      } else {
        part.tiles.addUnreadable();
      }
    });
  }
  parts[1].meanQualities = reference.meanQualities;
  parts[1].lastQualities = reference.lastQualities;
  parts[1].lowComplexityReads = reference.lowComplexityReads;
  parts[0].merge(parts[1]);
  return parts[0];
}

SampleResult resultOf(const Reads& reads, const Adapter& adapter = {}) {
  const ReferenceCounts reference = referenceCounts(reads, adapter);
  const SampleCounts counts = countsOf(reads, reference);
  expectSameCounts(counts, reference);
  const SampleResult result =
      summarise(counts, reference.duplication,
                [&](std::uint64_t position, PositionCounts& at) { at = reference.positions.at(position); },
                {adapter, {}});
  expectSameValues(result, referenceValues(reference));
  return result;
}

int pick(Random& random, std::initializer_list<int> choices) {
  return *(choices.begin() + random() % choices.size());
}

// A sample with habits of its own, so that each check meets good, doubtful and bad ones.
Reads randomReads(Random& random) {
  const auto chance = [&](double probability) { return std::bernoulli_distribution(probability)(random); };
  const auto upTo = [&](int most) { return std::uniform_int_distribution<int>(0, most)(random); };
  const int longest = pick(random, {1, 11, 12, 13, 50, 75, 76, 101, 150, 320, 2300});
  const int shortest = chance(0.5) ? longest : upTo(longest);
  const int number = longest > 1000 ? 40 : pick(random, {1, 7, 150, 1500, 1500});
  const double gc = 0.1 + 0.1 * upTo(8), gcSpread = 0.001 + 0.05 * upTo(4),
               skew = chance(0.5) ? 0 : 0.04 * upTo(6);
  const double unknown = chance(0.5) ? 0 : 0.04 * upTo(8), repeated = chance(0.5) ? 0 : 0.2 * upTo(5),
               adapted = 0.03 * upTo(5);
  const int level = 'B' + upTo(40), spread = 1 + upTo(30), tileFault = upTo(14);
  const double dull = chance(0.5) ? 0 : 0.02;
  const std::string letters = chance(0.3) ? "ACGTacgtNRn-" : "ACGT";
  const std::vector<Probe> probes = probesOf({});
  Reads reads;
  for (int i = 0; i < number; ++i) {
    ReferenceRead read;
    const int tile = 1101 + upTo(5);
    const int length = shortest + upTo(longest - shortest);
    const double own = std::clamp(std::normal_distribution<double>(gc, gcSpread)(random), 0.0, 1.0);
    for (int j = 0; j < length; ++j) {
      read.sequence += chance(own) ? (chance(0.5 + skew) ? 'G' : 'C') : (chance(0.5 + skew) ? 'A' : 'T');
      if (chance(unknown)) read.sequence.back() = 'N';
      if (chance(0.02)) read.sequence.back() = letters[random() % letters.size()];
      const int quality = level + upTo(spread) - (tile == 1101 ? tileFault : 0);
      read.quality += static_cast<char>(std::clamp(quality, 33, 126));
    }
    if (!reads.empty() && chance(repeated)) read.sequence = reads.front().sequence;
    if (chance(adapted))
      read.sequence.insert(random() % (read.sequence.size() + 1), probes[random() % 6].sequence);
    if (chance(dull)) read.sequence.assign(read.sequence.size(), 'A');
    read.sequence.resize(read.quality.size(), 'C');
    read.header = "@m:1:cell:2:" + std::to_string(tile) + ":3:4";
    reads.push_back(read);
  }
  return reads;
}

TEST(Metrics, EqualThePlainCalculation) {
  Random random(11);
  std::array<std::set<std::string_view>, common::kChecks.size()> seen;
  const std::vector<Adapter> adapters = {
      {}, {AdapterKind::Illumina, {}}, {AdapterKind::Nextera, {}}, customAdapter("ACNNT")};
  for (std::size_t i = 0; i < 160; ++i) {
    const SampleResult result = resultOf(randomReads(random), adapters[i % adapters.size()]);
    for (std::size_t check = 0; check < seen.size(); ++check) {
      seen[check].insert(common::verdictWord(result.verdicts[static_cast<Check>(check)]));
    }
    ASSERT_FALSE(HasFailure()) << "sample " << i;
  }
  for (std::size_t check = 1; check < seen.size(); ++check) {
    for (const char* verdict : {"pass", "warn", "fail"}) {
      EXPECT_TRUE(seen[check].contains(verdict)) << common::kChecks[check].column << " never had " << verdict;
    }
  }
}

TEST(Metrics, OddReads) {
  const std::string gs(50, 'G');
  const std::vector<Reads> samples = {
      {{"@", "", ""}},
      {{"@", "", ""}, {"@a:b:7:d:e", "A", "~"}, {"@", "", ""}},
      {{"@", "N", "!"}},
      {{"@", "-", "@"}, {"@", "AC", "@h"}},
      {{"@", "AC", "?h"}},
      // One read whose weights sum up to exactly 1.
      {{"@", gs + std::string(50, 'T'), std::string(100, 'I')}},
      {{"@", std::string(12, 'A'), std::string(12, 'I')}},
      {{"@", std::string(12, 'A'), std::string(12, 'I')}, {"@", std::string(13, 'A'), std::string(13, 'I')}},
      {{"@", std::string(20'000, 'G'), std::string(20'000, 'I')}, {"@", gs, gs}, {"@", gs + "C", gs + "C"}},
  };
  for (const Reads& reads : samples) {
    const SampleResult result = resultOf(reads);
    ASSERT_FALSE(HasFailure()) << reads.front().sequence.substr(0, 200);
  }
}

TEST(ReadLengths, MedianAndRange) {
  struct Case {
    std::vector<std::uint64_t> lengths;
    double mean, median;
    std::uint64_t shortest, longest;
    std::size_t bins;
  };
  const std::vector<Case> cases = {
      {{7}, 7, 7, 7, 7, 1},
      {{0}, 0, 0, 0, 0, 1},
      {{3, 1, 2}, 2, 2, 1, 3, 3},
      {{4, 1, 2, 2}, 2.25, 2, 1, 4, 4},
      {{1, 1, 4, 4}, 2.5, 2.5, 1, 4, 4},
      // Across the end of the length table.
      {{65'535, 65'536, 65'537, 70'000}, 66'652, 65'536.5, 65'535, 70'000, 195},
      {{70'000, 80'000, 70'000}, 220'000.0 / 3, 70'000, 70'000, 80'000, 197},
  };
  for (const Case& one : cases) {
    const std::string shown = testing::PrintToString(one.lengths);
    ReadLengths counts;
    for (const std::uint64_t length : one.lengths) {
      counts.add(length);
    }
    const LengthSummary lengths = counts.summary();
    EXPECT_DOUBLE_EQ(lengths.mean, one.mean) << shown;
    EXPECT_DOUBLE_EQ(lengths.median, one.median) << shown;
    EXPECT_EQ(lengths.shortest, one.shortest) << shown;
    EXPECT_EQ(lengths.longest, one.longest) << shown;
    EXPECT_EQ(lengths.reads, one.lengths.size());
    const std::vector<LengthBin> bins = lengthBins(counts);
    EXPECT_EQ(bins.size(), one.bins) << shown;
    EXPECT_EQ(bins.back().longest, one.longest) << shown;
    EXPECT_GT(bins.back().reads, 0U) << shown;
  }
}

TEST(PositionGroups, AreFewAndRound) {
  struct Case {
    std::uint64_t longest;
    std::size_t groups;
    PositionGroup tenth, last;
  };
  const std::vector<Case> cases = {
      {75, 75, {10, 10}, {75, 75}},       {76, 43, {10, 11}, {76, 76}},
      {139, 74, {10, 11}, {138, 139}},    {140, 36, {10, 14}, {140, 140}},
      {334, 74, {10, 14}, {330, 334}},    {335, 42, {10, 19}, {330, 335}},
      {1000, 60, {10, 19}, {1000, 1000}}, {100'000, 60, {10, 1999}, {100'000, 100'000}},
  };
  EXPECT_TRUE(positionGroups(0).empty());
  for (const Case& one : cases) {
    const std::vector<PositionGroup> groups = positionGroups(one.longest);
    EXPECT_EQ(groups.size(), one.groups) << one.longest;
    EXPECT_EQ(groups.at(9), one.tenth) << one.longest;
    EXPECT_EQ(groups.back(), one.last) << one.longest;
  }
}

TEST(TileScheme, FieldsAndNumbers) {
  struct Case {
    std::string first, header;
    std::optional<int> tile;
  };
  const std::vector<Case> cases = {
      {"@a:b:c:d:1101:x:y", "@a:b:c:d:1102:x:y", 1102},
      {"@a:b:c:d:1101:x:y 1:N:0:AC", "@a:b:c:d:7", 7},
      {"@a:b:5:d:e:f", "@a:b:6", 6},
      {"@a:b:5:d:e", "@a:b", std::nullopt},
      {"@a:b:5:d", "@a:b:5:d", std::nullopt},
      // Empty fields at the end are none.
      {"@a:b:5:d:6::", "@a:b:5:d:6::", 5},
      {"@a:b:5:::::", "@a:b:5:::::", std::nullopt},
      {":::::1", ":::::1", std::nullopt},
      {"@a:b:5:d:e", "@a:b:+6:", 6},
      {"@a:b:5:d:e", "@a:b:-6:", -6},
      {"@a:b:5:d:e", "@a:b:+-6:", std::nullopt},
      {"@a:b:5:d:e", "@a:b: 6:", std::nullopt},
      {"@a:b:5:d:e", "@a:b:6 :", std::nullopt},
      {"@a:b:5:d:e", "@a:b::6", std::nullopt},
      {"@a:b:5:d:e", "@a:b:0x6", std::nullopt},
      {"@a:b:5:d:e", "@a:b:0002147483647", 2147483647},
      {"@a:b:5:d:e", "@a:b:2147483648", std::nullopt},
  };
  for (const Case& one : cases) {
    EXPECT_EQ(TileScheme(one.first).tileOf(one.header), one.tile) << one.first << " " << one.header;
  }
  EXPECT_EQ(TileScheme().tileOf("@a:b:c:d:1101:x:y"), std::nullopt);
}

TEST(TileCounts, EndWithTooManyTilesAndUnreadableHeaders) {
  const auto counting = [](int first, int last) {
    TileCounts counts;
    for (int tile = first; tile <= last; ++tile) {
      counts.add(tile, "I");
    }
    return counts;
  };
  const auto merged = [](TileCounts into, const TileCounts& other) {
    into.merge(other);
    into.add(1, "I");
    return into.tiles().size();
  };
  EXPECT_EQ(counting(1, 2501).tiles().size(), 2501U);
  EXPECT_EQ(counting(0, 2501).tiles().size(), 0U);
  EXPECT_EQ(merged(counting(1, 2000), counting(501, 2501)), 2501U);
  EXPECT_EQ(merged(counting(1, 2000), counting(502, 2502)), 0U);
  TileCounts unreadable;
  unreadable.addUnreadable();
  EXPECT_EQ(merged(counting(1, 2), unreadable), 0U);
  EXPECT_EQ(merged(unreadable, counting(1, 2)), 0U);
}

// Collections that were full long before the end of the file.
TEST(Duplication, EqualsThePlainProduct) {
  Random random(5);
  for (int i = 0; i < 300; ++i) {
    DuplicationCounts counts;
    const std::uint64_t keys = 1 + random() % 400;
    for (std::uint64_t key = 0; key < keys; ++key) {
      const std::uint64_t level = random() % 4 == 0 ? 1 + random() % 300 : 1 + random() % 3;
      counts.keys.emplace_back("a key", level);
      counts.reads += level;
    }
    counts.limit = std::max<std::uint64_t>(keys, random() % counts.reads);
    counts.reads += random() % (20 * counts.reads);
    const DuplicationSummary summary = estimateDuplication(counts);
    EXPECT_NEAR(summary.deduplicatedPercent, referenceDeduplicated(counts), 1e-9) << "sample " << i;
    double reads = 0;
    for (const DuplicationLevel& level : summary.levels) {
      reads += level.readsPercent;
    }
    EXPECT_NEAR(reads, 100, 1e-9) << "sample " << i;
  }
}

TEST(Duplication, LevelsBeginAboveRoundNumbers) {
  DuplicationCounts counts;
  for (const std::uint64_t copies : {9U, 10U, 50U, 51U, 100U, 101U, 10'000U, 10'001U}) {
    counts.keys.emplace_back("a key", copies);
    counts.reads += copies;
  }
  counts.limit = counts.reads;
  std::map<std::uint64_t, double> keys;
  for (const DuplicationLevel& level : estimateDuplication(counts).levels) {
    if (level.distinctPercent > 0) keys[level.from] = level.distinctPercent * 8 / 100;
  }
  EXPECT_EQ(keys,
            (std::map<std::uint64_t, double>{{9, 1}, {10, 2}, {51, 2}, {101, 1}, {5001, 1}, {10'001, 1}}));
}

// Differences of exactly 10 or 20 % in decimals are a little more or less in binary numbers, by the order of
// the operations; other programs share and then scale.
TEST(Content, ExactThresholdsAreThoseOfSharesInPercent) {
  std::uint64_t warned = 0, passed = 0;
  for (std::uint64_t known = 10; known <= 300; known += 5) {
    for (const std::uint64_t difference : {known / 10, known / 5}) {
      for (std::uint64_t c = 0; 2 * c + difference <= known; ++c) {
        const std::uint64_t g = c + difference, a = (known - g - c) / 2, t = known - g - c - a;
        PositionCounts counts{};
        counts.bases[kBaseA] = a;
        counts.bases[kBaseC] = c;
        counts.bases[kBaseG] = g;
        counts.bases[kBaseT] = t;
        PositionProfile profile(1);
        profile.add(counts);
        const auto percent = [&](std::uint64_t count) {
          return static_cast<double>(count) / static_cast<double>(known) * 100;
        };
        const double largest = std::max(std::abs(percent(g) - percent(c)), std::abs(percent(a) - percent(t)));
        const Verdict expected = largest > 20 ? Verdict::Fail : largest > 10 ? Verdict::Warn : Verdict::Pass;
        ASSERT_EQ(judgeContent(profile.groups(33)), expected) << known << ": " << g << " G, " << c << " C";
        ++(expected == Verdict::Pass ? passed : warned);
      }
    }
  }
  EXPECT_GT(warned, 100U);
  EXPECT_GT(passed, 100U);
}

TEST(Overrepresented, NamesWhatTheSequenceHolds) {
  const DuplicationCounts counts = {
      3000,
      3000,
      {{"TTAGATCGGAAGAGTT", 4}, {"ACGT", 3}, {"CCCC", 100}, {"AAAAAAAAAAAAAA", 4}, {"TTACGNAC", 5}}};
  const auto found = overrepresentedSequences(counts, probesOf(customAdapter("acnn")));
  std::vector<std::string> shown;
  for (const OverrepresentedSequence& one : found) {
    shown.push_back(one.sequence + " " + one.origin);
  }
  EXPECT_EQ(shown, (std::vector<std::string>{"CCCC ", "TTACGNAC custom adapter",
                                             "TTAGATCGGAAGAGTT Illumina universal adapter",
                                             "AAAAAAAAAAAAAA poly-A"}));
}

}  // namespace
}  // namespace genostat::analysis
