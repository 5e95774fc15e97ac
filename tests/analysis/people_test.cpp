// What only people get: the line of progress and the JSON document.
#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <limits>
#include <sstream>
#include <thread>

#include "analysis/report/progress.h"
#include "analysis/report/result_json.h"

namespace genostat::analysis {
namespace {

TEST(ProgressLine, FitsItsTerminal) {
  struct Case {
    JobProgress::State state;
    double seconds;
    std::size_t width;
    std::string line;
  };
  const std::vector<Case> cases = {
      {{1'000, 500, 0, 1, 0, {{"a.fq"}}}, 0, 80, "50 %  0.0 MB/s  a.fq"},
      {{2'000'000, 2'500'000, 0, 1, 0, {{"a.fq"}}}, 0.5, 80, "100 %  5.0 MB/s  a.fq"},
      {{0, 7'000'000, 0, 1, 0, {{"stdin"}}}, 2, 80, "7.0 MB  3.5 MB/s  stdin"},
      {{10, 0, 0, 96, 3, {{"a"}, {"b\x1b[2J"}}}, 1, 80, "0 %  0.0 MB/s  3 of 96 samples  a, b\\x1B[2J"},
      {{10, 0, 0, 1, 0, {{"abcdef"}}}, 1, 18, "0 %  0.0 MB/s  abc"},
      {{4'000'000, 1'000'000, 9'999, 1, 0, {{"a"}}}, 25, 80, "25 %  0.0 MB/s  9999 reads  1:15 left  a"},
      {{9'000'000, 1'000, 2'345'678, 1, 0, {}}, 2, 80, "0 %  0.0 MB/s  2.35M reads  4:59:58 left"},
      {{9'000'000'000, 1, 12'345, 1, 0, {}}, 2, 80, "0 %  0.0 MB/s  12.3k reads"},
      // A wide character is not cut in half, nor does it reach over the edge.
      {{10, 0, 0, 1, 0, {{"\xC3\xA9\xE6\xA2\x9D\xE6\xA2\x9D"}}},
       1,
       19,
       "0 %  0.0 MB/s  \xC3\xA9\xE6\xA2\x9D"},
      {{10, 0, 0, 1, 0, {{"a"}}}, 1, 0, ""},
  };
  for (const Case& one : cases) {
    EXPECT_EQ(progressLine(one.state, one.seconds, one.width), one.line);
  }
}

TEST(ProgressDisplay, LeavesNothingBehind) {
  JobProgress progress(200, 2);
  SampleProgress& first = progress.begin("first.fq", 100);
  progress.begin("second.fq", 100).addBytes(50);
  first.addBytes(100);
  progress.end(first);
  std::ostringstream out;
  {
    const ProgressDisplay unseen(
        progress, out, [] { return std::size_t{80}; }, std::chrono::hours(1));
  }
  EXPECT_EQ(out.str(), "") << "a short job shows nothing";
  {
    const ProgressDisplay display(
        progress, out, [] { return std::size_t{60}; }, std::chrono::milliseconds(1));
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
  }
  // The rate of so few bytes depends on the first millisecond.
  EXPECT_THAT(out.str(), testing::MatchesRegex(
                             "\r75 %  0\\.. MB/s  1 of 2 samples  second.fq\x1b\\[K.*\x1b\\[K\r\x1b\\[K"));
}

TEST(ResultJson, HoldsColumnsAndCurves) {
  ResultRow row;
  row.sample = "12";
  row.file = "in/12.fq";
  row.adapter = AdapterKind::Custom;
  SampleResult& result = row.result;
  result.lengths.reads = std::numeric_limits<std::uint64_t>::max();
  result.phredOffset = 64;
  result.gcPercent = 40.5;
  result.medianPhredFirst = -29;
  result.readsByMeanQuality['h'] = 3;
  result.profile = {{.positions = {1, 1}, .meanPhred = 100.0 / 3, .quantiles = {}, .bases = {}},
                    {.positions = {2, 3},
                     .meanPhred = -1e-9,
                     .quantiles = QualityQuantiles{2, 10, 20, 30, 38},
                     .bases = {{25, 25, 50, 0}}}};
  result.gc.emplace().deviation = std::numeric_limits<double>::quiet_NaN();
  result.overrepresented = {{"ACGT", 5, 0.25, "poly\xFF"}, {"GGGG", 4, 0.2, ""}};
  result.tiles.tiles = {{1101, {-0.125, 1.0 / 3}}};

  rapidjson::Document document;
  const std::string text = jsonBeginning({AdapterKind::Custom, "ACGN"}) + jsonSample(row, true) + jsonEnd();
  document.Parse(text.c_str());
  ASSERT_FALSE(document.HasParseError()) << text;
  const auto& sample = document["samples"][0];
  EXPECT_STREQ(document["adapter"]["sequence"].GetString(), "ACGN");
  EXPECT_STREQ(sample["file"].GetString(), "in/12.fq");
  EXPECT_EQ(sample["columns"].MemberCount(), 27U);
  EXPECT_STREQ(sample["columns"]["Sample"].GetString(), "12");
  EXPECT_EQ(sample["columns"]["Total_Sequences"].GetUint64(), std::numeric_limits<std::uint64_t>::max());
  EXPECT_TRUE(sample["columns"]["mean_phred_all_reads"].IsNull());
  // Numbers as they are written, so that the decimals are seen.
  for (const char* part : {R"("GC":40.5000,)", R"("median_phred_first_10bp":-29,)",
                           R"({"positions":[1,1],"meanPhred":33.333333,"nPercent":0})",
                           R"("meanPhred":0,"phredQuantiles":[2,10,20,30,38],"basesPercent":[25,25,50,0])",
                           R"("deviation":null,)", R"("readsByMeanPhred":{"40":3})",
                           R"({"sequence":"GGGG","reads":4,"percent":0.2})",
                           "\"origin\":\"poly\xEF\xBF\xBD\"", R"({"tile":1101,"phred":[-0.125,0.333333]})"}) {
    EXPECT_NE(text.find(part), std::string::npos) << part << "\n" << text;
  }
}

}  // namespace
}  // namespace genostat::analysis
