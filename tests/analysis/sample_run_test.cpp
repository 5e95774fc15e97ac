// One sample, several threads: the result depends on neither their number nor where chunks end.
#include <gtest/gtest.h>

#include <random>
#include <thread>

#include "analysis/crew.h"
#include "analysis/fastq/chunk_source.h"
#include "analysis/report/result_csv.h"
#include "analysis/request/failure.h"
#include "analysis/sample_run.h"
#include "platform/path_text.h"
#include "tests/analysis/packed_text.h"
#include "tests/support/run_program.h"
#include "tests/support/temporary_folder.h"

namespace genostat::analysis {
namespace {

class TextSource : public ByteSource {
 public:
  explicit TextSource(const std::string& bytes) : left_(bytes) {}
  std::size_t read(std::span<char> into) override {
    const std::size_t size = std::min(into.size(), left_.size());
    std::copy_n(left_.begin(), size, into.begin());
    left_.remove_prefix(size);
    return size;
  }

 private:
  std::string_view left_;
};

// Shared by all runs, as in a job.
BatchPool pool;

std::unique_ptr<SampleRun> runThrough(const std::string& bytes, std::size_t chunkSize, unsigned threads,
                                      const Kernels& kernels = bestKernels()) {
  auto run = std::make_unique<SampleRun>(openChunks(std::make_unique<TextSource>(bytes), chunkSize),
                                         ResultOptions{}, pool, nullptr, kernels);
  std::vector<std::jthread> others;
  for (unsigned i = 0; i < threads; ++i) {
    others.emplace_back([&run] { run->work(); });
  }
  others.clear();
  EXPECT_TRUE(run->exhausted());
  return run;
}

// Every figure of the result that is shown.
std::string figures(SampleRun& run) {
  return csvHeader() + csvLine(ResultRow{"sample", {}, {}, AdapterKind::None, run.result(), {}});
}

std::string errorOf(const std::string& bytes, std::size_t chunkSize, unsigned threads) {
  try {
    runThrough(bytes, chunkSize, threads)->result();
  } catch (const FastqError& error) {
    return error.what();
  }
  return "no error";
}

// Reads of which the order matters to every metric that can depend on it.
std::string makeText(std::size_t reads) {
  std::mt19937 random(3);
  std::string text;
  for (std::size_t i = 0; i < reads; ++i) {
    const std::size_t length = random() % 20 == 0 ? random() % 20 : 60 + random() % 60;
    std::string sequence, quality;
    while (sequence.size() < length) {
      sequence += "ACGTNacgt"[random() % (random() % 9 == 0 ? 9 : 4)];
      quality += static_cast<char>('#' + random() % 40);
    }
    if (random() % 5 == 0 && length >= 12) sequence.replace(length - 12, 12, "AGATCGGAAGAG");
    if (random() % 5 == 0) sequence.assign(length, 'T');
    text += "@run:7:cell:1:" + std::to_string(1101 + random() % 5) + ":1:" + std::to_string(i) + "\n" +
            sequence + "\n+\n" + quality + "\n";
    if (random() % 50 == 0) text += "\r\n";
  }
  return text;
}

TEST(SampleRun, ResultIsTheSameHoweverItIsMade) {
  const std::string text = makeText(12'000);
  const std::string wanted = figures(*runThrough(text, text.size() + 1, 1, *usableKernels().back()));
  const auto expectSame = [&](const std::string& bytes, std::size_t chunkSize, unsigned threads,
                              const Kernels& kernels) {
    EXPECT_EQ(figures(*runThrough(bytes, chunkSize, threads, kernels)), wanted)
        << chunkSize << " bytes, " << threads << " threads, " << kernels.name;
  };
  for (const Kernels* kernels : usableKernels()) {
    expectSame(text, 10'000, 1, *kernels);
  }
  for (const unsigned threads : {1U, 2U, 5U}) {
    for (const std::size_t chunkSize : {700U, 65'536U, 1'000'000U}) {
      expectSame(text, chunkSize, threads, bestKernels());
    }
    expectSame(test::gzip(text), 30'000, threads, bestKernels());
    expectSame(test::bgzf(text, 9'999), 30'000, threads, bestKernels());
  }
}

TEST(SampleRun, TellsTheFirstErrorOfTheFile) {
  const std::string good = "@r\nACGT\n+\nIIII\n";
  const auto repeat = [&](std::size_t times) {
    std::string text;
    while (times-- > 0) {
      text += good;
    }
    return text;
  };
  const std::string badQuality = "@r\nACGT\n+\nII\x7FI\n";
  const std::string badHeader = "r\nACGT\n+\nIIII\n";
  const std::vector<std::pair<std::string, std::string>> cases = {
      {repeat(100) + badQuality + good + badHeader + repeat(100),
       "record 101, line 404: the quality has character code 127 at position 3; allowed are '!' to '~'"},
      {repeat(50) + badHeader + badQuality, "record 51, line 201: the header starts with 'r' instead of '@'"},
      {repeat(200) + badQuality + repeat(50) + badQuality,
       "record 201, line 804: the quality has character code 127 at position 3; allowed are '!' to '~'"},
      {repeat(30) + "@r\nACGT", "record 31, line 123: the file ends inside the record, before its '+' line"},
      {"", "the file is empty"},
  };
  for (const auto& [text, error] : cases) {
    for (const std::size_t chunkSize : {1U, 16U, 100U, 100'000U}) {
      for (const unsigned threads : {1U, 4U}) {
        EXPECT_EQ(errorOf(text, chunkSize, threads), error) << chunkSize << ", " << threads;
      }
    }
  }
}

// A source whose memory runs out in the middle of the file.
class FailingChunks : public ChunkSource {
 public:
  bool fetch(Chunk& chunk) override {
    if (++fetched_ > 20) throw std::bad_alloc();
    const std::string text = "@r\nACGT\n+\nIIII\n";
    chunk.text.reserve(text.size());
    std::copy(text.begin(), text.end(), chunk.text.data());
    chunk.size = text.size();
    return true;
  }
  std::uint64_t bytesRead() const override { return 0; }

 private:
  int fetched_ = 0;
};

TEST(SampleRun, EndsWhenMemoryRunsOut) {
  SampleRun run(std::make_unique<FailingChunks>(), {}, pool, nullptr);
  {
    std::vector<std::jthread> threads;
    for (int i = 0; i < 3; ++i) {
      threads.emplace_back([&run] { run.work(); });
    }
  }
  EXPECT_THROW(run.result(), std::bad_alloc);
}

// Of each sample its reads, or its failure, as they come.
std::vector<std::string> outcomesOf(const std::vector<Sample>& samples, const CrewOptions& options) {
  std::vector<std::string> outcomes;
  measureSamples(samples, options, [&](std::size_t sample, const SampleOutcome& outcome) {
    EXPECT_EQ(sample, outcomes.size());
    const auto* const result = std::get_if<SampleResult>(&outcome);
    outcomes.push_back(result != nullptr ? std::to_string(result->lengths.reads)
                                         : std::get<Failure>(outcome).subject());
  });
  return outcomes;
}

// Many more than threads, of very different sizes: the first is the last to be done.
TEST(Crew, HandsOnOutcomesInOrder) {
  const test::TemporaryFolder folder;
  test::writeWholeFile(folder.path() / "large.fq", makeText(30'000));
  test::writeWholeFile(folder.path() / "small.fq", makeText(3));
  test::writeWholeFile(folder.path() / "bad.fq", "no header\n");
  test::writeWholeFile(folder.path() / "empty.fq", "");
  std::vector<std::string> paths;
  std::vector<std::string> expected;
  const std::vector<std::pair<std::string, std::string>> kinds = {
      {"small.fq", "3"}, {"bad.fq", "bad.fq"}, {"empty.fq", "0"}, {"missing.fq", "missing.fq"}};
  for (std::size_t i = 0; i < 100; ++i) {
    const auto& [name, outcome] =
        i % 33 == 0 ? std::pair<std::string, std::string>("large.fq", "30000") : kinds[i % 4];
    paths.push_back(platform::pathToUtf8(folder.path() / name));
    expected.push_back(name == "missing.fq" ? paths.back() : outcome);
  }
  const std::vector<Sample> samples = samplesOfFiles(paths, {.keepBad = true});
  for (const unsigned threads : {1U, 2U, 8U}) {
    EXPECT_EQ(outcomesOf(samples, {.adapter = {}, .threads = threads, .keepGoing = true}), expected);
  }
  int calls = 0;
  const auto failing = [&](std::size_t, const SampleOutcome&) {
    if (++calls == 5) throw Failure(ExitCode::OutputFailed, "disk", "full");
  };
  EXPECT_THROW(measureSamples(samples, {.adapter = {}, .threads = 4, .keepGoing = true}, failing), Failure);
  EXPECT_EQ(calls, 5);
}

// The first in their order, whichever is met first, and none of those after it.
TEST(Crew, TellsTheFirstFailureOfTheSamples) {
  const test::TemporaryFolder folder;
  const std::string good = makeText(2'000);
  const std::vector<std::pair<std::string, std::string>> files = {
      {"a.fq", good}, {"b.fq", good + "no header\n"}, {"c.fq", "no header\n"}, {"d.fq", good}};
  std::vector<std::string> paths;
  for (const auto& [name, text] : files) {
    test::writeWholeFile(folder.path() / name, text);
    paths.push_back(platform::pathToUtf8(folder.path() / name));
  }
  for (const unsigned threads : {1U, 2U, 8U}) {
    CrewOptions options;
    options.threads = threads;
    for (int i = 0; i < 5; ++i) {
      try {
        outcomesOf(samplesOfFiles(paths), options);
        ADD_FAILURE() << "no failure";
      } catch (const Failure& failure) {
        EXPECT_EQ(failure.subject(), "b.fq") << threads << " threads";
      }
    }
    EXPECT_EQ(outcomesOf(samplesOfFiles({paths[0], paths[3], paths[0]}), options).size(), 3U);
  }
}

}  // namespace
}  // namespace genostat::analysis
