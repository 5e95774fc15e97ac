// The numbers of a sample.
#include <gtest/gtest.h>

#include <random>

#include "analysis/metrics/sample_metrics.h"

namespace genostat::analysis {
namespace {

SampleResult measure(const std::vector<std::pair<std::string, std::string>>& reads) {
  SampleMetrics metrics;
  for (const auto& [sequence, quality] : reads) {
    const Record record{"@r", sequence, quality};
    metrics.add({&record, 1});
  }
  return metrics.result();
}

SampleResult measureLengths(const std::vector<std::size_t>& lengths) {
  std::vector<std::pair<std::string, std::string>> reads;
  for (const std::size_t length : lengths) {
    reads.emplace_back(std::string(length, 'A'), std::string(length, 'I'));
  }
  return measure(reads);
}

TEST(ReadLengths, MedianAndRange) {
  struct Case {
    std::vector<std::size_t> lengths;
    double mean, median;
    std::uint64_t shortest, longest;
  };
  const std::vector<Case> cases = {
      {{7}, 7, 7, 7, 7},
      {{0}, 0, 0, 0, 0},
      {{3, 1, 2}, 2, 2, 1, 3},
      {{4, 1, 2, 2}, 2.25, 2, 1, 4},
      {{1, 1, 4, 4}, 2.5, 2.5, 1, 4},
      // Across the end of the length table.
      {{65'535, 65'536, 65'537, 70'000}, 66'652, 65'536.5, 65'535, 70'000},
      {{70'000, 80'000, 70'000}, 220'000.0 / 3, 70'000, 70'000, 80'000},
  };
  for (const Case& one : cases) {
    const LengthSummary lengths = measureLengths(one.lengths).lengths;
    EXPECT_DOUBLE_EQ(lengths.mean, one.mean) << testing::PrintToString(one.lengths);
    EXPECT_DOUBLE_EQ(lengths.median, one.median) << testing::PrintToString(one.lengths);
    EXPECT_EQ(lengths.shortest, one.shortest) << testing::PrintToString(one.lengths);
    EXPECT_EQ(lengths.longest, one.longest) << testing::PrintToString(one.lengths);
    EXPECT_EQ(lengths.reads, one.lengths.size());
  }
}

TEST(QualityLevel, OffsetComesFromTheLowestCharacterOfTheFile) {
  EXPECT_DOUBLE_EQ(measure({{"AC", "@h"}}).qualities.meanPhred().value(), 20);
  EXPECT_DOUBLE_EQ(measure({{"AC", "@h"}, {"A", "?"}}).qualities.meanPhred().value(), (31 + 71 + 30) / 3.0);
}

// All bytes, lengths around the block sizes of the counters, against a count one by one.
TEST(Metrics, CountsEqualASlowCount) {
  std::mt19937 random(7);
  std::vector<std::pair<std::string, std::string>> reads;
  std::uint64_t gc = 0, at = 0, sum = 0;
  for (const std::size_t length : {1U, 254U, 255U, 256U, 511U, 512U, 513U, 5'000U}) {
    for (const bool onlyGc : {false, true}) {
      std::string sequence, quality;
      for (std::size_t i = 0; i < length; ++i) {
        const char base = onlyGc ? "GgCc"[random() % 4] : static_cast<char>(random() % 256);
        sequence += base;
        quality += onlyGc ? '~' : static_cast<char>('!' + random() % 94);
        gc += std::string("GgCc").find(base) != std::string::npos;
        at += std::string("AaTt").find(base) != std::string::npos;
        sum += static_cast<unsigned char>(quality.back());
      }
      reads.emplace_back(sequence, quality);
    }
  }
  const SampleResult result = measure(reads);
  EXPECT_EQ(result.bases.gc, gc);
  EXPECT_EQ(result.bases.at, at);
  EXPECT_EQ(result.qualities.sum, sum);
  EXPECT_EQ(result.qualities.characters, result.lengths.bases);
}

}  // namespace
}  // namespace genostat::analysis
