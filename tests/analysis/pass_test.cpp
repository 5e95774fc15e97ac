// The vectorised pass against the plain one, on every vector unit of this machine.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "analysis/metrics/sample_metrics.h"
#include "tests/analysis/reference_metrics.h"

namespace genostat::analysis {
namespace {

// What a test wants of its reads.
struct Recipe {
  std::string name;
  std::vector<std::size_t> lengths;
  std::string letters;
  char lowest = '!';
  char highest = '~';
  std::string planted;  // put into some of the reads
};

std::string allBytes() {
  std::string bytes;
  for (int code = 0; code < 256; ++code) {
    if (code != '\n') bytes += static_cast<char>(code);
  }
  return bytes;
}

std::vector<ReferenceRead> makeReads(const Recipe& recipe, std::mt19937& random) {
  std::vector<ReferenceRead> reads;
  for (const std::size_t length : recipe.lengths) {
    ReferenceRead read;
    read.header = "@run:7:cell:1:" + std::to_string(1101 + random() % 3) + ":5:6";
    // Runs of one letter as well: low complexity, and probes of one letter.
    const bool monotonous = random() % 4 == 0;
    char letter = recipe.letters[random() % recipe.letters.size()];
    for (std::size_t i = 0; i < length; ++i) {
      if (!monotonous || random() % 16 == 0) letter = recipe.letters[random() % recipe.letters.size()];
      read.sequence += letter;
      read.quality += static_cast<char>(
          recipe.lowest +
          static_cast<int>(random() % static_cast<unsigned>(recipe.highest - recipe.lowest + 1)));
    }
    if (!recipe.planted.empty() && length > recipe.planted.size()) {
      const std::size_t at = random() % (length - recipe.planted.size() + 1);
      read.sequence.replace(at, recipe.planted.size(), recipe.planted);
    }
    reads.push_back(std::move(read));
  }
  return reads;
}

std::vector<std::size_t> lengthsFrom(std::size_t first, std::size_t last) {
  std::vector<std::size_t> lengths;
  for (std::size_t length = first; length <= last; ++length) {
    lengths.push_back(length);
  }
  return lengths;
}

// The reads as records at all alignments, in batches of differing size, measured with some kernels.
class Pass {
 public:
  Pass(const Kernels& kernels, const Adapter& adapter)
      : probes_(sequences(adapter)), metrics_(kernels, probes_) {}

  void add(std::span<const ReferenceRead> reads) {
    if (!reads.empty() && filled_ == 0) tiles_ = TileScheme(reads.front().header);
    std::size_t size = 0;
    for (const ReferenceRead& read : reads) {
      size += read.header.size() + 2 * read.sequence.size() + 100;
    }
    Batch batch;
    batch.chunk.text.reserve(size);
    // Characters that would be counted if a kernel looked beyond a line.
    std::fill_n(batch.chunk.text.data(), size, 'G');
    batch.filledBefore = filled_;
    batch.longestBefore = longest_;
    char* next = batch.chunk.text.data();
    const auto put = [&](const std::string& text) {
      next += reads.size() % 3 + 1;
      char* const begin = next;
      next = std::copy(text.begin(), text.end(), next);
      return std::string_view(begin, text.size());
    };
    for (const ReferenceRead& read : reads) {
      batch.records.push_back({put(read.header), put(read.sequence), put(read.quality), 1});
      filled_ += !read.sequence.empty();
      longest_ = std::max<std::uint64_t>(longest_, read.sequence.size());
    }
    reads_ += reads.size();
    EXPECT_FALSE(metrics_.add(batch, tiles_));
    const std::size_t taken = table_.full() ? 0 : table_.collect(batch.records);
    if (table_.full()) {
      table_.count(std::span(std::as_const(batch.records)).subspan(taken), metrics_.duplicates);
    }
  }

  void expect(const ReferenceCounts& reference) {
    expectSameCounts(metrics_.takeCounts(), reference);
    expectSameDuplication(table_.result(reads_, {&metrics_.duplicates, 1}), reference.duplication);
    for (std::size_t position = 0; position < reference.positions.size() + 70; ++position) {
      PositionCounts counts;
      metrics_.positions().addTo(position, counts);
      const PositionCounts wanted =
          position < reference.positions.size() ? reference.positions[position] : PositionCounts{};
      ASSERT_EQ(counts.bases, wanted.bases) << position;
      ASSERT_EQ(counts.qualities, wanted.qualities) << position;
    }
  }

 private:
  static std::vector<std::string> sequences(const Adapter& adapter) {
    std::vector<std::string> sequences;
    for (const Probe& probe : probesOf(adapter)) {
      sequences.push_back(probe.sequence);
    }
    return sequences;
  }

  ProbeSet probes_;
  SampleMetrics metrics_;
  DuplicateTable table_;
  TileScheme tiles_;
  std::uint64_t filled_ = 0;
  std::uint64_t longest_ = 0;
  std::uint64_t reads_ = 0;
};

TEST(Pass, CountsEqualThePlainOnes) {
  std::vector<std::size_t> mixed = {200'000, 0, 1, 70'001, 65'536};
  for (int i = 0; i < 150; ++i) {
    mixed.push_back(static_cast<std::size_t>(i) * 37 % 1500);
  }
  const Adapter none;
  const std::vector<std::pair<Recipe, Adapter>> cases = {
      {{"every length", lengthsFrom(0, 200), "ACGT", '#', 'I', "AGATCGGAAGAG"}, none},
      {{"all bytes, all qualities", lengthsFrom(50, 270), allBytes(), '!', '~', ""}, none},
      {{"lower case", lengthsFrom(1, 140), "aCgTnN", '@', 'h', "ctgtctcttata"}, none},
      {{"many of one length", std::vector<std::size_t>(700, 150), "ACGTN", '5', '5', ""}, none},
      {{"long and short", mixed, "ACGT", '"', 'S', "TGGAATTCTCGG"}, none},
      {{"a short probe", std::vector<std::size_t>(300, 20), "ACGT\xC3", '!', '~', "ACT"},
       {AdapterKind::Custom, "ANT"}},
      {{"a probe of any letters", lengthsFrom(0, 60), "ACGTNX", '!', '~', ""},
       {AdapterKind::Custom, "NNNNNNNNNNNN"}},
  };
  std::mt19937 random(11);
  for (const auto& [recipe, adapter] : cases) {
    const std::vector<ReferenceRead> reads = makeReads(recipe, random);
    const ReferenceCounts reference = referenceCounts(reads, adapter);
    for (const Kernels* kernels : usableKernels()) {
      SCOPED_TRACE(recipe.name + ", " + kernels->name);
      Pass pass(*kernels, adapter);
      std::span<const ReferenceRead> left = reads;
      for (std::size_t size = 1; !left.empty(); size = size * 2 + 1) {
        const std::size_t count = std::min(size, left.size());
        pass.add(left.first(count));
        left = left.subspan(count);
      }
      pass.expect(reference);
    }
  }
}

TEST(Pass, CollectsKeysUntilThereAreEnough) {
  // More keys than are collected; the first reads come once more when the table is full.
  std::vector<ReferenceRead> reads;
  for (std::uint32_t i = 0; i < kMaxKeys + 5000; ++i) {
    std::string key;
    for (std::uint32_t bits = i; key.size() < 9; bits /= 4) {
      key += "ACGT"[bits % 4];
    }
    reads.push_back({"@r", key, std::string(key.size(), 'I')});
    if (i % 50 == 0) reads.push_back(reads.back());
  }
  reads.insert(reads.end(), reads.begin(), reads.begin() + 3000);
  const ReferenceCounts reference = referenceCounts(reads, {});
  ASSERT_EQ(reference.duplication.keys.size(), kMaxKeys);
  Pass pass(bestKernels(), {});
  std::span<const ReferenceRead> left = reads;
  while (!left.empty()) {
    const std::size_t count = std::min<std::size_t>(7919, left.size());
    pass.add(left.first(count));
    left = left.subspan(count);
  }
  pass.expect(reference);
}

TEST(Kernels, FindEveryLineFeed) {
  std::mt19937 random(5);
  for (const Kernels* kernels : usableKernels()) {
    for (std::size_t size = 0; size < 300; ++size) {
      std::string text(size + 2 * TextBuffer::kPadding, '\n');
      std::vector<std::uint32_t> wanted;
      for (std::size_t i = 0; i < size; ++i) {
        if (random() % (size % 7 + 1) != 0) {
          text[i + 1] = static_cast<char>(random());
        }
        if (text[i + 1] == '\n') wanted.push_back(static_cast<std::uint32_t>(i));
      }
      std::vector<std::uint32_t> offsets(size + 64);
      offsets.resize(kernels->findLineFeeds(text.data() + 1, size, offsets.data()));
      EXPECT_EQ(offsets, wanted) << kernels->name;
    }
  }
}

}  // namespace
}  // namespace genostat::analysis
