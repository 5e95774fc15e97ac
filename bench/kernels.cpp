// The analyser's inner loops, each for every vector unit that this processor has, on 150-base reads that stay
// in the second-level cache as they do in the program. "base" is the time for one base of the reads; bytes
// count the whole text.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "analysis/fastq/record_cutter.h"
#include "analysis/metrics/adapters.h"
#include "analysis/metrics/duplicate_table.h"
#include "analysis/metrics/position_counters.h"
#include "analysis/metrics/sample_metrics.h"
#include "analysis/simd/kernels.h"
#include "bench/read_model.h"

namespace genostat::analysis {
namespace {

constexpr std::size_t kReads = 1'500;
constexpr std::size_t kLength = 150;
constexpr std::size_t kShare = 64;  // reads that are looked at together

using MakeTrack = bench::QualityTrack (*)(bench::Random&, std::size_t);

// FASTQ text and its records.
class Reads {
 public:
  explicit Reads(MakeTrack track) {
    bench::Random random(7);
    const std::string genome = bench::makeGenome(random, 1'000'000);
    std::string text;
    for (std::size_t i = 0; i < kReads; ++i) {
      text += "@GS1001:27:HBENCHDSX1:1:1101:" + std::to_string(1000 + random.below(30'000)) +
              ":1000 1:N:0:GGTTAACC\n";
      text += genome.substr(random.below(genome.size() - kLength), kLength) + "\n+\n";
      text += track(random, kLength).codes + "\n";
    }
    batch_.chunk.text.reserve(text.size());
    std::memcpy(batch_.chunk.text.data(), text.data(), text.size());
    batch_.chunk.size = text.size();
    batch_.lineFeedCapacity = text.size() + kBlockSize;
    batch_.lineFeeds = std::make_unique_for_overwrite<std::uint32_t[]>(batch_.lineFeedCapacity);
    batch_.lineFeedCount =
        bestKernels().findLineFeeds(batch_.chunk.text.data(), text.size(), batch_.lineFeeds.get());
    cut();
    // Far after the first reads, which are all looked at for their tiles.
    batch_.filledBefore = 1'000'000;
    batch_.longestBefore = kLength;
    if (batch_.records.size() != kReads) throw std::logic_error("the reads are not what they should be");
  }

  Batch& batch() { return batch_; }
  std::span<const Record> records() const { return batch_.records; }
  void cut() { RecordCutter().cut(batch_, true); }

 private:
  Batch batch_;
};

template <typename Use>
void forEachShare(std::span<const Record> records, Use use) {
  for (std::size_t done = 0; done < records.size(); done += kShare) {
    use(records.subspan(done, std::min(kShare, records.size() - done)));
  }
}

// Measures `work`, which looks at all reads once.
template <typename Work>
void measure(const std::string& name, Reads& reads, Work work) {
  benchmark::RegisterBenchmark(name.c_str(), [&reads, work](benchmark::State& state) mutable {
    for ([[maybe_unused]] auto turn : state) {
      work(reads);
      benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(reads.batch().chunk.size));
    state.counters["base"] =
        benchmark::Counter(static_cast<double>(kReads * kLength),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
  });
}

void measureKernels(const Kernels& kernels, const ProbeSet& probes, Reads& binned, Reads& fine) {
  const std::string unit = std::string("/") + kernels.name;
  measure("findLineFeeds" + unit, binned, [&kernels](Reads& reads) {
    Batch& batch = reads.batch();
    benchmark::DoNotOptimize(
        kernels.findLineFeeds(batch.chunk.text.data(), batch.chunk.size, batch.lineFeeds.get()));
  });
  measure("sumQualities" + unit, binned,
          [&kernels, sums = std::vector<std::uint64_t>(kShare)](Reads& reads) mutable {
            forEachShare(reads.records(), [&](std::span<const Record> share) {
              benchmark::DoNotOptimize(kernels.sumQualities(share, sums.data()));
            });
          });
  measure("countSequences" + unit, binned,
          [&kernels, lengths = std::vector<std::uint64_t>(kShare, gcLength(kLength)),
           counts = std::vector<SequenceCounts>(kShare)](Reads& reads) mutable {
            forEachShare(reads.records(), [&](std::span<const Record> share) {
              kernels.countSequences(share, lengths.data(), counts.data());
            });
          });
  measure("findProbes" + unit, binned,
          [&kernels, &probes, hits = std::vector<ProbeHit>(kShare * probes.size())](Reads& reads) mutable {
            forEachShare(reads.records(), [&](std::span<const Record> share) {
              benchmark::DoNotOptimize(kernels.findProbes(share, probes, hits.data()));
            });
          });
  for (Reads* const reads : {&binned, &fine}) {
    const std::string levels = reads == &binned ? ", 4 levels" : ", 40 levels";
    std::vector<std::uint64_t> sums(kReads);
    measure("countPositions" + levels + unit, *reads,
            [counters = std::make_shared<PositionCounters>(kernels),
             range = kernels.sumQualities(reads->records(), sums.data())](Reads& all) {
              forEachShare(all.records(),
                           [&](std::span<const Record> share) { counters->add(share, range); });
            });
    measure("every metric" + levels + unit, *reads,
            [metrics = std::make_shared<SampleMetrics>(kernels, probes),
             tiles = TileScheme(reads->records().front().header)](Reads& all) {
              benchmark::DoNotOptimize(metrics->add(all.batch(), tiles));
            });
  }
}

// A full table, far larger than the caches that are near, and reads of which most are not in it.
void measureKeys() {
  benchmark::RegisterBenchmark("countKeys, full table", [](benchmark::State& state) {
    bench::Random random(11);
    const std::string genome = bench::makeGenome(random, 4'000'000);
    std::vector<Record> reads(200'000);
    for (Record& read : reads) {
      const std::size_t start = random.below(genome.size() - kLength - TextBuffer::kPadding);
      read.sequence = std::string_view(genome).substr(start, kLength);
    }
    DuplicateTable table;
    const std::size_t collected = table.collect(reads);
    const std::span<const Record> others = std::span(std::as_const(reads)).subspan(collected);
    DuplicateTable::Counts counts;
    for ([[maybe_unused]] auto turn : state) {
      table.count(others, counts);
      benchmark::ClobberMemory();
    }
    state.counters["read"] =
        benchmark::Counter(static_cast<double>(others.size()),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
  });
}

int run(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  Reads binned(bench::binnedTrack);
  Reads fine(bench::fineTrack);
  std::vector<std::string> sequences;
  for (const Probe& probe : probesOf({})) {
    sequences.push_back(probe.sequence);
  }
  const ProbeSet probes(sequences);
  measure("cutRecords", binned, [](Reads& reads) { reads.cut(); });
  measureKeys();
  for (const Kernels* kernels : usableKernels()) {
    measureKernels(*kernels, probes, binned, fine);
  }
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}

}  // namespace
}  // namespace genostat::analysis

int main(int argc, char** argv) {
  return genostat::analysis::run(argc, argv);
}
