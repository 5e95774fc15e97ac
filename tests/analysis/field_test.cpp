// What goes beside the result: FastQC's data files, and the progress of a launched job.
#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <algorithm>
#include <chrono>
#include <limits>

#include "analysis/report/fastqc_data.h"
#include "analysis/report/fastqc_folder.h"
#include "analysis/report/progress_file.h"
#include "tests/analysis/base64_text.h"
#include "tests/analysis/packed_text.h"
#include "tests/support/run_program.h"
#include "tests/support/temporary_folder.h"

namespace genostat::analysis {
namespace {

namespace fs = std::filesystem;

using test::namesIn;
using test::readWholeFile;
using test::writeWholeFile;
using Names = std::vector<std::string>;

const fs::path kProgram = fs::absolute(fs::path(GENOSTAT_BIN_DIR) / "genostat-analysis");
const std::string kRead = "@a\nG\n+\n5\n";

TEST(FastqcData, KeepsItsForm) {
  SampleResult result;
  result.lengths = {.reads = 3, .bases = 18'790'999, .shortest = 0, .longest = 2'000};
  result.phredOffset = 64;
  result.gcPercent = 40.99;
  for (const Check check :
       {Check::BasicStatistics, Check::PerBaseSequenceQuality, Check::PerSequenceQualityScores,
        Check::PerBaseSequenceContent, Check::SequenceDuplicationLevels, Check::OverrepresentedSequences,
        Check::PerTileSequenceQuality}) {
    result.verdicts[check] = Verdict::Warn;
  }
  result.profile = {{.positions = {1, 9}, .meanPhred = 30, .quantiles = {}, .bases = {}}};
  result.readsByMeanQuality['h'] = 2;
  result.readsByMeanQuality['j'] = 1;
  result.duplication.levels = {{9, 1.5, 0}, {10, 0, 0}, {51, 0, 0}, {5001, 0, 0}, {10'001, 1e-7, 0}};
  result.overrepresented = {{"#\t>\nA", 2, 66.5, ""}, {"ACGT", 1, 33, "poly-A"}};
  result.tiles = {.groups = {{1, 1}}, .tiles = {{1101, {-1.0 / 3}}}};
  EXPECT_EQ(
      fastqcData(result, "a\n>>b\xE2\x80\xA9\xFF"),
      "##FastQC\t0.12.1\n"
      ">>Basic Statistics\twarn\n#Measure\tValue\nFilename\ta >>b \xEF\xBF\xBD\n"
      "File type\tConventional base calls\nEncoding\tIllumina 1.5\nTotal Sequences\t3\n"
      "Total Bases\t18.7 Mbp\nSequences flagged as poor quality\t0\nSequence length\t0-2000\n%GC\t40\n"
      ">>END_MODULE\n"
      ">>Per base sequence quality\twarn\n"
      "#Base\tMean\tMedian\tLower Quartile\tUpper Quartile\t10th Percentile\t90th Percentile\n"
      "1-9\t30.0\tNaN\tNaN\tNaN\tNaN\tNaN\n>>END_MODULE\n"
      ">>Per tile sequence quality\twarn\n#Tile\tBase\tMean\n1101\t1\t-0.3333333333333333\n>>END_MODULE\n"
      ">>Per sequence quality scores\twarn\n#Quality\tCount\n40\t2.0\n41\t0.0\n42\t1.0\n>>END_MODULE\n"
      ">>Per base sequence content\twarn\n#Base\tG\tA\tT\tC\n1-9\tNaN\tNaN\tNaN\tNaN\n>>END_MODULE\n"
      ">>Sequence Duplication Levels\twarn\n#Total Deduplicated Percentage\t100.0\n"
      "#Duplication Level\tPercentage of total\n9\t1.5\n>10\t0.0\n>50\t0.0\n>5k\t0.0\n>10k+\t0.0000001\n"
      ">>END_MODULE\n"
      ">>Overrepresented sequences\twarn\n#Sequence\tCount\tPercentage\tPossible Source\n"
      "????A\t2\t66.5\tNo Hit\nACGT\t1\t33.0\tpoly-A\n>>END_MODULE\n");
}

TEST(FastqcPlaces, AreAllDifferent) {
  const std::string tooLong = std::string(239, 'x') + "\xC3\xA9" + std::string(9, 'y');
  const Names samples = {"a", "A", "a", "a.2", "", tooLong, tooLong + "z"};
  FastqcPlaces places(samples);
  Names shown;
  for (const std::string& name : samples) {
    const FastqcPlace place = places.next(name, name + ".fq");
    shown.push_back(place.folder + " " + place.fileName);
  }
  // Named by its user, from standard input.
  FastqcPlaces one({"a/b"});
  EXPECT_EQ(one.next("a/b", "a/b").fileName, "a_b");
  const std::string stem(239, 'x');
  EXPECT_EQ(shown, (Names{"a_fastqc a.fq", "A.3_fastqc A.3.fq", "a.4_fastqc a.4.fq", "a.2_fastqc a.2.fq",
                          "_fastqc .fq", stem + "_fastqc " + tooLong + ".fq",
                          stem + ".2_fastqc " + tooLong + "z.2.fq"}));
}

TEST(FastqcFolder, IsWrittenInBothForms) {
  const test::TemporaryFolder folder;
  writeWholeFile(folder.path() / "good.fq", kRead);
  writeWholeFile(folder.path() / "bad.fq", "?");
  writeWholeFile(folder.path() / "file", "");
  const std::string payload = test::toBase64(
      R"({"fastq_data":[{"adapter":"NONE","custom_sequence":"","CSV_Path":"r.csv","files":["good.fq"]}]})");
  const auto run = [&](const Names& arguments, const std::string& asked) {
    return test::runProgram({kProgram, arguments, folder.path(), {}, {{"GENOSTAT_FASTQC_DATA", asked}}});
  };
  const fs::path data = fs::path("good_fastqc") / "fastqc_data.txt";
  const std::string sentence = ": cannot write \"file\": Not a directory\n";

  EXPECT_EQ(run({"qc", "good.fq", "good.fq", "--csv", "p.csv", "--fastqc-data", "new/deep"}, "file").err, "");
  const std::string text = readWholeFile(folder.path() / "new/deep" / data);
  EXPECT_EQ(text.substr(0, 71),
            "##FastQC\t0.12.1\n>>Basic Statistics\tpass\n#Measure\tValue\nFilename\tgood.fq");
  EXPECT_EQ(namesIn(folder.path() / "new/deep"), (Names{"good.2_fastqc", "good_fastqc"}));
  EXPECT_EQ(run({"script", payload}, "launched").err, "");
  EXPECT_EQ(readWholeFile(folder.path() / "launched" / data), text);

  // Nothing is left of what fails, and only people's own wish fails the run.
  EXPECT_EQ(run({"qc", "bad.fq", "--fastqc-data", "none"}, "").status, 5);
  const test::ProgramResult refused = run({"qc", "bad.fq", "--fastqc-data", "file"}, "");
  EXPECT_EQ(refused.err, "error" + sentence);
  EXPECT_EQ(refused.status, 9);
  const test::ProgramResult warned = run({"script", payload}, "file");
  EXPECT_EQ(warned.err, "warning" + sentence);
  EXPECT_EQ(warned.status, 0);
  EXPECT_EQ(namesIn(folder.path()),
            (Names{"bad.fq", "file", "good.fq", "launched", "new", "p.csv", "r.csv"}));
}

// Waits for what another thread or program does.
bool happens(const std::function<bool()>& what) {
  for (int i = 0; i < 3000; ++i) {
    if (what()) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return false;
}

constexpr ProgressFile::Pace kFast{std::chrono::milliseconds(1), std::chrono::milliseconds(1)};

TEST(ProgressFile, IsWholeAtAnyTime) {
  const test::TemporaryFolder folder;
  const fs::path file = folder.path() / "r.csv.progress";
  writeWholeFile(file, R"({"format":"genostat-progress","version":1,"samples":99})");
  JobProgress progress(1'000, 2);
  progress.end(progress.begin("first", 100));
  SampleProgress& second = progress.begin("\"2\xFF", 900);
  {
    const ProgressFile writer(progress, folder.path() / "r.csv", kFast);
    std::uint64_t seen = 0;
    std::uint64_t changes = 0;
    EXPECT_TRUE(happens([&] {
      second.addBytes(1);
      second.addReads(2);
      const std::string text = readWholeFile(file);
      rapidjson::Document document;
      document.Parse(text.c_str());
      if (text.empty()) return false;
      EXPECT_FALSE(document.HasParseError()) << text;
      EXPECT_EQ(document["samples"].GetUint64(), 2U);
      EXPECT_EQ(document["finished"].GetUint64(), 1U);
      EXPECT_EQ(document["bytesTotal"].GetUint64(), 1'000U);
      EXPECT_GE(document["seconds"].GetDouble(), 0);
      const auto& sample = document["running"][0];
      EXPECT_STREQ(sample["name"].GetString(), "\"2\xEF\xBF\xBD");
      EXPECT_EQ(sample["size"].GetUint64(), 900U);
      EXPECT_EQ(sample["bytes"].GetUint64(), document["bytesDone"].GetUint64());
      EXPECT_EQ(sample["reads"].GetUint64(), document["readsDone"].GetUint64());
      changes += sample["reads"].GetUint64() != seen ? 1U : 0U;
      seen = sample["reads"].GetUint64();
      return changes == 20;
    }));
  }
  EXPECT_EQ(namesIn(folder.path()), Names{});
}

TEST(ProgressFile, DisturbsNobody) {
  const test::TemporaryFolder folder;
  const fs::path foreign = folder.path() / "r.csv.progress";
  writeWholeFile(foreign, "mine");
  fs::create_directory(folder.path() / "d.csv.progress");
  JobProgress progress(0, 0);
  for (const char* result : {"r.csv", "d.csv", "gone/r.csv"}) {
    const ProgressFile writer(progress, folder.path() / result, kFast);
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
  }
  { const ProgressFile unseen(progress, folder.path() / "short.csv", {std::chrono::hours(1), {}}); }
  EXPECT_EQ(readWholeFile(foreign), "mine");
  EXPECT_EQ(namesIn(folder.path()), (Names{"d.csv.progress", "r.csv.progress"}));
}

TEST(ProgressFile, OfADeadRunIsRemovedByALaterOne) {
  const test::TemporaryFolder folder;
  // More than anybody can read before it is interrupted, in little space.
  std::string reads;
  for (int i = 0; i < 5'000; ++i) {
    reads += "@read\n" + std::string(100, 'A') + "\n+\n" + std::string(100, 'I') + "\n";
  }
  const std::string member = test::gzip(reads);
  std::string packed;
  for (int i = 0; i < 5'000; ++i) {
    packed += member;
  }
  writeWholeFile(folder.path() / "long.fq.gz", packed);
  writeWholeFile(folder.path() / "short.fq", kRead);
  const auto request = [](const std::string& file) {
    return Names{"script",
                 test::toBase64(R"({"fastq_data":[{"adapter":"NONE","custom_sequence":"","CSV_Path":")" +
                                file + R"(.csv","files":[")" + file + "\"]}]}")};
  };
  const fs::path left = folder.path() / "long.fq.gz.csv.progress";
  const auto killed =
      test::runAndSignal({kProgram, request("long.fq.gz"), folder.path(), {}, {}}, test::Signal::Interrupt,
                         [&](int sent) { return sent == 0 && fs::exists(left); });
  if (!killed) return;
  EXPECT_EQ(killed->status, 130);
  rapidjson::Document document;
  document.Parse(readWholeFile(left).c_str());
  ASSERT_FALSE(document.HasParseError());
  EXPECT_EQ(document["bytesTotal"].GetUint64(), packed.size());
  EXPECT_STREQ(document["running"][0]["name"].GetString(), "long");
  EXPECT_GT(document["running"][0]["reads"].GetUint64(), 0U);

  // Too young to be taken for dead.
  const auto runShort = [&] {
    EXPECT_EQ(test::runProgram({kProgram, request("short.fq"), folder.path(), {}, {}}).status, 0);
  };
  runShort();
  EXPECT_TRUE(fs::exists(left));
  const auto old = fs::file_time_type::clock::now() - std::chrono::hours(1);
  const fs::path foreign = folder.path() / "x.progress";
  writeWholeFile(foreign, "mine");
  fs::last_write_time(left, old);
  fs::last_write_time(foreign, old);
  runShort();
  EXPECT_EQ(namesIn(folder.path()), (Names{"long.fq.gz", "short.fq", "short.fq.csv", "x.progress"}));
}

}  // namespace
}  // namespace genostat::analysis
