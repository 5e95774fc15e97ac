// genostat shell with input from a pipe: what it answers, shows, writes, and how it ends.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/run_program.h"
#include "tests/support/temporary_folder.h"

namespace genostat::test {
namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class ShellProgram : public testing::Test {
 protected:
  ShellProgram() {
    fs::create_directory(folder_.path() / "temp");
    writeWholeFile(folder_.path() / "good.fastq", "@r1\nACGTACGTAC\n+\nIIIIIIIIII\n");
  }

  ProgramCall call(const std::string& input, const std::vector<std::string>& more = {}) const {
    std::vector<std::string> arguments = {"shell", "--temp", "temp", "--language", "en"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return {fs::absolute(GENOSTAT_BIN_DIR) / "genostat",
            std::move(arguments),
            folder_.path(),
            input,
            {{"LC_ALL", "C"}, {"XDG_STATE_HOME", "unused"}}};
  }

  TemporaryFolder folder_;
};

constexpr const char* kJob = "GENOSTAT\n  /JOB NAME='a' FILE='good.fastq'\n  /DESCRIPTIVES VARIABLES=GC.\n";

TEST_F(ShellProgram, RunsCommandsJobsAndItsOwnWords) {
  writeWholeFile(folder_.path() / "more.syntax", "DESCRIPTIVES qc_score.\n");
  const ProgramResult result = runProgram(
      call("jobs\ndatasets.\n" + std::string(kJob) +
           "WAIT.\ndatasets\nshow GC 2\nshow\nrun more.syntax\noutput text 'all so far.txt'.\n"
           "output html report.html\njobs\nDESCRIPTIVES\n  total_bases\n\nhelp descriptives\nquit\nnot run"));
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_THAT(result.out, AllOf(StartsWith("no job runs or waits\nno dataset is open\n"),
                                HasSubstr("| GC                 | 1 |"), HasSubstr("Datasets\n"),
                                HasSubstr("| a | *      |     1 |"), HasSubstr("| qc_score "),
                                HasSubstr("| Total_Bases "), HasSubstr("/STATISTICS=")));
  EXPECT_THAT(result.err, AllOf(HasSubstr("job 'a' finished\n"), Not(HasSubstr("error"))));
  const std::string text = readWholeFile(folder_.path() / "all so far.txt");
  EXPECT_THAT(text, AllOf(HasSubstr("| qc_score "), Not(HasSubstr("Total_Bases        |")),
                          Not(HasSubstr("Datasets\n"))));
  EXPECT_THAT(readWholeFile(folder_.path() / "report.html"), StartsWith("<!DOCTYPE html>"));
  EXPECT_THAT(namesIn(folder_.path() / "temp"), IsEmpty());
  EXPECT_FALSE(fs::exists(folder_.path() / "unused"));
}

TEST_F(ShellProgram, SaysWhereItDoesNotUnderstand) {
  const struct {
    const char* input;
    const char* place;
    const char* said;
  } rows[] = {
      {"\njbos\n", "<stdin>:2:1: error: unknown command \"jbos\"\n  jbos\n  ^~~~\n", "did you mean jobs?"},
      {"jobs now\n", "<stdin>:1:6: error: ", "\"now\""},
      {"cancel\n", "<stdin>:1:1: error: ", "all"},
      {"cancel run\n", "<stdin>:1:8: error: ", "no job \"run\" runs or waits"},
      {"show nope\n", "<stdin>:1:6: error: ", "\"nope\""},
      {"show\n", "<stdin>:1:1: error: ", "no dataset is active"},
      {"output htm.\n", "<stdin>:1:1: error: ", "output html report.html"},
      {"output hmtl x.html\n", "<stdin>:1:8: error: ", "did you mean html?"},
      {"output html no/folder/x.html\n", "<stdin>:1:13: error: ", "no/folder"},
      {"run nope.syntax\n", "<stdin>:1:5: error: ", "nope.syntax"},
      {"help regresion\n", "<stdin>:1:6: error: ", "did you mean REGRESSION?"},
      // Errors of commands name their lines, and a command may end with the text.
      {"\n\nDESCRIPTIVES\n  x", "<stdin>:3:1: error: ", "no dataset is active"},
      {"DESCRIPTVES x\n  /STATISTICS=ALL.\njobs\n", "<stdin>:1:1: error: ", "did you mean DESCRIPTIVES?"},
  };
  for (const auto& row : rows) {
    const ProgramResult result = runProgram(call(row.input));
    EXPECT_EQ(result.status, 1) << row.input;
    EXPECT_THAT(result.err, AllOf(StartsWith(row.place), HasSubstr(row.said))) << row.input;
    EXPECT_EQ(result.err.find("error: ", std::string(row.place).size()), std::string::npos) << result.err;
  }
}

TEST_F(ShellProgram, WaitsAtTheEndUnlessJobsAreCancelled) {
  const ProgramResult waited = runProgram(call(kJob, {"--output", "json", "--to", "out.json"}));
  EXPECT_EQ(waited.status, 0) << waited.err;
  EXPECT_THAT(readWholeFile(folder_.path() / "out.json"), HasSubstr("Descriptive Statistics"));

  // The second cannot have begun when it is cancelled.
  std::string second = kJob;
  second.replace(second.find("'a'"), 3, "'b'");
  const ProgramResult cancelled = runProgram(call(kJob + second + "cancel b\ncancel all\n"));
  EXPECT_EQ(cancelled.status, 0) << cancelled.err;
  EXPECT_THAT(cancelled.err, AllOf(HasSubstr("job 'b' cancelled\n"), Not(HasSubstr("job 'b' finished"))));
  EXPECT_THAT(namesIn(folder_.path() / "temp"), IsEmpty());
}

}  // namespace
}  // namespace genostat::test
