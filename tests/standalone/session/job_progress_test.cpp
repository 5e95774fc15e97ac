// What is read of an analysis that tells its progress, whoever wrote the file.
#include "standalone/session/job_progress.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>

#include "standalone/session/finished_job.h"
#include "tests/support/run_program.h"
#include "tests/support/temporary_folder.h"

namespace genostat::standalone {
namespace {

namespace fs = std::filesystem;

const std::string kHead = R"({"format":"genostat-progress","version":1)";

// Short enough for a table: the members in their order, "-" for nothing.
std::string shown(const std::optional<JobProgress>& progress) {
  if (!progress) return "-";
  std::string text = std::to_string(progress->finished) + "/" + std::to_string(progress->samples) + " " +
                     std::to_string(progress->bytesDone) + "/" + std::to_string(progress->bytesTotal) + " " +
                     std::to_string(progress->readsDone) + " " +
                     std::to_string(std::lround(progress->seconds * 10));
  for (const SampleProgress& sample : progress->running) {
    text += " [" + sample.name + " " + std::to_string(sample.bytes) + "/" + std::to_string(sample.size) +
            " " + std::to_string(sample.reads) + "]";
  }
  return text;
}

TEST(JobProgress, IsReadFromWholeFilesOnly) {
  const std::string& head = kHead;
  const std::vector<std::pair<std::string, std::string>> cases = {
      {head +
           R"(,"samples":3,"finished":1,"bytesDone":5,"bytesTotal":9,"readsDone":8,"seconds":1.5,"running":)" +
           R"([{"name":"a","bytes":2,"size":4,"reads":7},{"name":"b\u0000\n","bytes":0,"size":0,"reads":0}]})",
       "1/3 5/9 8 15 [a 2/4 7] [" + std::string("b\0\n", 3) + " 0/0 0]"},
      {head + "}", "0/0 0/0 0 0"},
      // Other kinds of members than expected count as missing.
      {head + R"(,"samples":-3,"finished":1e9,"seconds":"x","running":{}})", "0/0 0/0 0 0"},
      {head + R"(,"seconds":-1,"running":[1,{"name":2},null]})", "0/0 0/0 0 0 [ 0/0 0]"},
      {head + R"(,"more":[{}],"samples":2}  )", "0/2 0/0 0 0"},
      {head + R"(,"samples":3,"fin)", "-"},
      {head + "}}", "-"},
      {R"({"format":"genostat-progress","version":2})", "-"},
      {R"({"format":"genostat-qc","version":1})", "-"},
      {R"({"format":7,"version":1})", "-"},
      {"[]", "-"},
      {"", "-"},
      {std::string(70, '\0'), "-"},
      {std::string(100'000, '['), "-"},
      {head + R"(,"x":")" + "\xFF\"}", "-"},
      {head + "}" + std::string(1 << 20, ' '), "-"},
  };
  const test::TemporaryFolder folder;
  const fs::path file = progressFileOf(folder.path() / "1.csv");
  EXPECT_EQ(file.filename(), "1.csv.progress");
  EXPECT_EQ(shown(readJobProgress(file)), "-");
  EXPECT_EQ(shown(readJobProgress(folder.path())), "-");
  for (const auto& [text, expected] : cases) {
    test::writeWholeFile(file, text);
    EXPECT_EQ(shown(readJobProgress(file)), expected) << text.substr(0, 200);
  }
}

TEST(JobProgress, IsFoundWhileItMoves) {
  const test::TemporaryFolder folder;
  const auto found = [&] { return findProgressFile(folder.path()).value_or("none").filename(); };
  const auto now = fs::file_time_type::clock::now();
  EXPECT_EQ(found(), "none");
  for (const auto& [name, age] : std::vector<std::pair<std::string, int>>{
           {"1.csv.progress", 60}, {"2.csv", 0}, {"3.progress.csv", 0}}) {
    test::writeWholeFile(folder.path() / name, kHead);
    fs::last_write_time(folder.path() / name, now - std::chrono::seconds(age));
  }
  fs::create_directory(folder.path() / "5.csv.progress");
  EXPECT_EQ(found(), "none");
  test::writeWholeFile(folder.path() / "4.csv.progress", kHead);
  EXPECT_EQ(found(), "4.csv.progress");
  EXPECT_EQ(findProgressFile(folder.path() / "gone"), std::nullopt);
  test::writeWholeFile(folder.path() / "6.csv.progress", "foreign");
  for (const char* csv : {"4.csv", "5.csv", "6.csv"}) {
    removeLeftovers(folder.path() / csv);
  }
  test::writeWholeFile(folder.path() / "1.csv.progress", kHead + "}");
  removeLeftovers(folder.path() / "1.csv");
  EXPECT_EQ(test::namesIn(folder.path()),
            (std::vector<std::string>{"2.csv", "3.progress.csv", "4.csv.progress", "5.csv.progress",
                                      "6.csv.progress"}));
}

}  // namespace
}  // namespace genostat::standalone
