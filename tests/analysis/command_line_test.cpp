// What the program answers to command lines that it cannot run.
#include <gtest/gtest.h>

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
  const std::string isQc = "files are measured by \"genostat-analysis qc good.fq\"" + seeAll;
  const std::vector<std::pair<Arguments, std::string>> cases = {
      {{"script"}, "unknown subcommand 'script'" + seeAll},
      {{"script", "e30=", "more"}, "unknown subcommand 'script'" + seeAll},
      {{"qx", "good.fq"}, "unknown subcommand 'qx'; did you mean qc?" + seeAll},
      {{"QC", "good.fq", "."}, "unknown subcommand 'QC'; did you mean qc?" + seeAll},
      {{"good.fq"}, isQc},
      {{"good.fq", "good.fq"}, isQc},
      {{"script", "qc", "good.fq"}, "unexpected argument 'script' in front of qc" + seeQc},
      {{"--hlep"}, "unknown option '--hlep'; did you mean --help?" + seeAll},
      {{"--threads", "3", "qc", "good.fq"}, "unknown option '--threads'; did you mean qc --threads?" + seeQc},
      {{"qc"}, "no files or folders are given" + seeQc},
      {{"qc", ""}, "PATHS: an empty name is no file" + seeQc},
      {{"qc", "--adaptr=x", "good.fq"}, "unknown option '--adaptr=x'; did you mean --adapter?" + seeQc},
      {{"qc", "-a", "good.fq"}, "unknown option '-a'" + seeQc},
      {{"qc", "good.fq", "--csv"}, "--csv needs a value: FILE|-" + seeQc},
      {{"qc", "good.fq", "--adapter="}, "--adapter needs a value: none|illumina|nextera|SEQUENCE" + seeQc},
      {{"qc", "good.fq", "--threads", "0"},
       "--threads: '0' is no number of threads; expected 1 to 256" + seeQc},
  };
  for (const auto& [arguments, message] : cases) {
    const ProgramResult outcome = run(arguments);
    EXPECT_EQ(outcome.err, "genostat-analysis: error: " + message);
    EXPECT_EQ(outcome.status, 13) << message;
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
  for (const auto& [arguments, message] : std::vector<std::pair<Arguments, std::string>>{
           {{"qc", "--adapter", "ilumina", "good.fq"}, "unknown adapter \"ilumina\"; did you mean illumina?"},
           {{"qc", "./god.fq"}, "./god.fq: no such file; did you mean ./good.fq?"},
           {{"qc", "gd.f"}, "gd.f: no such file"}}) {
    EXPECT_EQ(run(arguments).err, "genostat-analysis: error: " + message + "\n");
  }
  EXPECT_EQ(run({"qc", "--threads", "x", "--csv", "none.fq", "--threads", "2", "good.fq"}).status, 13);
  EXPECT_EQ(run({"qc", "--adapter", "no", "--adapter", "none", "good.fq"}).status, 0)
      << "the last one counts";
}

TEST_F(CommandLine, ShowsHelpThatFits) {
  for (const Arguments& arguments : std::vector<Arguments>{
           {"--help"}, {"-h"}, {"help"}, {"qc", "--help"}, {"qc", "good.fq", "--csv", "--help"}}) {
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
  EXPECT_EQ(none.status, 13);
  EXPECT_EQ(run({"qc", "good.fq", "--version"}).out, run({"--version"}).out);
}

}  // namespace
}  // namespace genostat::test
