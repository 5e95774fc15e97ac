// What the program answers to command lines that it cannot run.
#include <gtest/gtest.h>

#include <regex>
#include <sstream>

#include "tests/support/run_program.h"
#include "tests/support/temporary_folder.h"

namespace genostat::test {
namespace {

namespace fs = std::filesystem;

using Arguments = std::vector<std::string>;

class CommandLine : public testing::Test {
 protected:
  CommandLine() { writeWholeFile(folder_.path() / "good.fq", "@a\nG\n+\n5\n"); }

  ProgramResult run(const Arguments& arguments, const std::string& columns = "80") const {
    return runProgram({fs::absolute(fs::path(GENOSTAT_BIN_DIR) / "genostat-analysis"),
                       arguments,
                       folder_.path(),
                       {},
                       {{"COLUMNS", columns}}});
  }

 private:
  TemporaryFolder folder_;
};

TEST_F(CommandLine, SaysWhatIsWrong) {
  const std::string seeAll = "\nTry \"genostat-analysis --help\".\n";
  const std::string seeQc = "\nTry \"genostat-analysis qc --help\".\n";
  const std::string isQc = "\"good.fq\" is no command; did you mean genostat-analysis qc good.fq?" + seeAll;
  const struct {
    Arguments arguments;
    std::string message;
    int status = 2;
  } cases[] = {
      {{"script"}, "unknown subcommand \"script\"" + seeAll},
      {{"script", "e30=", "more"}, "unknown subcommand \"script\"" + seeAll},
      {{"hlep", "--help"}, "unknown subcommand \"hlep\"" + seeAll},
      {{"QC", "good.fq", "."}, "unknown subcommand \"QC\"; did you mean qc?" + seeAll},
      {{"good.fq"}, isQc},
      // Two words are a job, and whoever launches one knows the contract's codes.
      {{"qx", "good.fq"}, "unknown subcommand \"qx\"; did you mean qc?" + seeAll, 13},
      {{"good.fq", "good.fq"}, isQc, 13},
      {{"script", "qc", "good.fq"}, "unexpected argument \"script\"" + seeQc},
      {{"--hlep"}, "unknown option \"--hlep\"; did you mean --help?" + seeAll},
      {{"--threads", "3", "qc", "good.fq"},
       "unknown option \"--threads\"; did you mean qc --threads?" + seeQc},
      {{"qc"}, "FILE is missing" + seeQc},
      {{"qc", ""}, "FILE: the value is empty" + seeQc},
      {{"qc", "--adaptr=x\x1B[2J", "good.fq"},
       "unknown option \"--adaptr=x\\x1B[2J\"; did you mean --adapter?" + seeQc},
      {{"qc", "-a", "good.fq"}, "unknown option \"-a\"" + seeQc},
      {{"qc", "good.fq", "--csv"}, "--csv needs a value: FILE|-" + seeQc},
      {{"qc", "good.fq", "--adapter="}, "--adapter needs a value: none|illumina|nextera|SEQUENCE" + seeQc},
      {{"qc", "good.fq", "--threads", "0"},
       "--threads: expected a whole number from 1 to 256, found \"0\"" + seeQc},
      {{"qc", "--adapter", "ilumina", "good.fq"},
       "unknown adapter \"ilumina\"; did you mean illumina?\n",
       10},
      {{"qc", "./god.fq"}, "cannot read \"./god.fq\": no such file or folder; did you mean ./good.fq?\n"},
      {{"qc", "gd.f"}, "cannot read \"gd.f\": no such file or folder\n"},
  };
  for (const auto& [arguments, message, status] : cases) {
    const ProgramResult outcome = run(arguments);
    EXPECT_EQ(outcome.err, "error: " + message);
    EXPECT_EQ(outcome.status, status) << message;
    EXPECT_EQ(outcome.out, "") << message;
  }
  // Jobs, whatever they hold.
  for (const auto& [arguments, code] : std::vector<std::pair<Arguments, int>>{{{"script", "e30="}, 4},
                                                                              {{"/script", "e30="}, 4},
                                                                              {{"script", "!"}, 3},
                                                                              {{"qc", "e30="}, 2},
                                                                              {{"script", ""}, 3}}) {
    EXPECT_EQ(run(arguments).status, code) << testing::PrintToString(arguments);
  }
  EXPECT_EQ(run({"qc", "--threads", "x", "--csv", "none.fq", "--threads", "2", "good.fq"}).status, 2);
  EXPECT_EQ(run({"qc", "--adapter", "no", "--adapter", "none", "good.fq"}).status, 0)
      << "the last one counts";
}

TEST_F(CommandLine, ShowsHelpThatFits) {
  for (const Arguments& arguments : std::vector<Arguments>{{"--help"},
                                                           {"-h"},
                                                           {"help"},
                                                           {"help", "qc"},
                                                           {"qc", "--help"},
                                                           {"qc", "good.fq", "--csv", "--help"}}) {
    for (const std::size_t width : {60U, 100U}) {
      const ProgramResult help = run(arguments, std::to_string(width));
      EXPECT_EQ(help.status, 0);
      EXPECT_EQ(help.err, "");
      for (const char* part : {"Usage: genostat-analysis qc [OPTIONS]", "Options:\n", "Examples:\n",
                               "Exit status:\n  0   all files were measured\n"}) {
        EXPECT_NE(help.out.find(part), std::string::npos) << part << "\n" << help.out;
      }
      std::istringstream lines(help.out);
      for (std::string line; std::getline(lines, line);) {
        EXPECT_LE(line.size(), width) << testing::PrintToString(arguments);
      }
    }
  }
  const ProgramResult none = run({});
  EXPECT_EQ(none.err, run({"--help"}).out);
  EXPECT_EQ(none.status, 2);
  EXPECT_TRUE(std::regex_match(
      run({"qc", "good.fq", "--version"}).out,
      std::regex("genostat-analysis \\d+\\.\\d+\\.\\d+\nLicence: MIT, the Genostat authors\n")));
}

}  // namespace
}  // namespace genostat::test
