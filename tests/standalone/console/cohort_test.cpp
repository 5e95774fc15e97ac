// The example cohort from its FASTQ files to the last table, compared with a kept transcript.
//
// After a wanted change, GENOSTAT_KEEP_TRANSCRIPT=1 writes the new transcript; read its difference before it
// is committed.
#include <gtest/gtest.h>

#include <cstdlib>
#include <regex>

#include "tests/support/run_program.h"
#include "tests/support/temporary_folder.h"

namespace genostat::test {
namespace {

namespace fs = std::filesystem;

constexpr const char* kTranscript = GENOSTAT_SOURCE_DIR "/tests/standalone/console/cohort_transcript.txt";

TEST(Cohort, GivesTheKeptTranscriptAndAReport) {
  const TemporaryFolder folder;
  fs::create_directory(folder.path() / "temp");
  // Names in the syntax are relative to the folder of the project.
  fs::create_directory(folder.path() / "examples");
  fs::copy(fs::path(GENOSTAT_SOURCE_DIR) / "examples", folder.path() / "examples",
           fs::copy_options::recursive | fs::copy_options::overwrite_existing);
  const ProgramResult result =
      runProgram({fs::absolute(GENOSTAT_BIN_DIR) / "genostat",
                  {"run", "examples/cohort.syntax", "--temp", "temp", "--html", "report.html"},
                  folder.path(),
                  "",
                  {{"LC_ALL", "C"}, {"COLUMNS", "110"}}});
  EXPECT_EQ(result.err, "job 'cohort' queued\njob 'cohort' running\njob 'cohort' finished\n");
  EXPECT_EQ(result.status, 0);
  EXPECT_TRUE(namesIn(folder.path() / "temp").empty());
  const std::string shown =
      std::regex_replace(result.out, std::regex("from .*\\.csv\n"), "from RESULTS.csv\n");
  if (std::getenv("GENOSTAT_KEEP_TRANSCRIPT") != nullptr) writeWholeFile(kTranscript, shown);
  EXPECT_EQ(shown, readWholeFile(kTranscript));

  const std::string report = readWholeFile(folder.path() / "report.html");
  for (const char* part : {"Model Summary", "Kendall", "Cumulative Percent", "treated_5", "</html>"}) {
    EXPECT_NE(report.find(part), std::string::npos) << part;
  }
}

}  // namespace
}  // namespace genostat::test
