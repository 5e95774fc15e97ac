// Sessions that are killed: what becomes of their analyses and of their temporary folders.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <thread>

#include "tests/support/run_program.h"
#include "tests/support/temporary_folder.h"

namespace genostat::test {
namespace {

namespace fs = std::filesystem;

constexpr const char* kRead = "@r1\nACGTACGTAC\n+\nIIIIIIIIII\n";

class KilledSession : public testing::Test {
 protected:
  KilledSession() {
    fs::create_directory(at("temp"));
    fs::create_directory(at("home"));
    writeWholeFile(at("reads.fastq"), kRead);
    writeWholeFile(at("a.syntax"),
                   "GENOSTAT\n  /JOB FILE='" + platform::pathToUtf8(at("reads.fastq")) + "' NAME='a'.\n");
    writeWholeFile(at("nothing.syntax"), "* A comment.\n");
  }

  fs::path at(const std::string& name) const { return folder_.path() / name; }
  void writeLauncher(const std::string& script) const {
    const fs::path launcher = at("home/statisticspython3.sh");
    writeWholeFile(launcher,
                   "#!/bin/sh\n" + script + "\nexec " GENOSTAT_BIN_DIR "/genostat-analysis \"$@\"\n");
    fs::permissions(launcher, fs::perms::owner_all);
  }
  ProgramCall call(const std::string& syntax, const std::string& temporary = "temp") const {
    return {fs::absolute(GENOSTAT_BIN_DIR) / "genostat",
            {"run", syntax, "--home", "home"},
            folder_.path(),
            {},
            {{"LC_ALL", "C"}, {"TMPDIR", temporary}, {"TMP", temporary}}};
  }
  std::vector<std::string> folders() const { return namesIn(at("temp")); }
  // Its files may have been begun and not ended; a process that nobody has waited for counts as ended.
  bool analysisRuns() const {
    std::string id = readWholeFile(at("home/id"));
    std::erase(id, '\n');
    return !id.empty() && !readWholeFile("/proc/" + id + "/cmdline").empty();
  }

  TemporaryFolder folder_;
};

TEST_F(KilledSession, WorksInAFolderThatNobodyElseCanMakeOrEnter) {
  if (fs::path::preferred_separator == '\\')
    GTEST_SKIP() << "its folder of temporary files is the user's own";
  writeLauncher(
      "csv=$(echo \"$2\" | base64 -d | sed 's/.*\"CSV_Path\":\"\\([^\"]*\\)\".*/\\1/')\n"
      "stat -c '%a %F' \"$(dirname \"$csv\")\" >home/mode");
  ProgramCall attacked = call("a.syntax");
  // The shell's process becomes the program's.
  attacked.arguments = {"-c", "ln -s nowhere temp/genostat-$$-0; exec \"$0\" run a.syntax --home home",
                        platform::pathToUtf8(attacked.program)};
  attacked.program = "/bin/sh";
  const ProgramResult result = runProgram(attacked);
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(readWholeFile(at("home/mode")), "700 directory\n");
  EXPECT_EQ(folders().size(), 1u) << "the link alone";

  const ProgramResult refused = runProgram(call("a.syntax", "nowhere"));
  EXPECT_EQ(refused.err,
            "error: cannot make a folder in the temporary folder \"nowhere\": No such file or directory "
            "(--temp chooses another)\n");
  EXPECT_EQ(refused.status, 1);
}

TEST_F(KilledSession, EndsItsAnalysisAndLeavesItsFolderToTheNextOne) {
  // The analysis finds gigabytes of reads, packed, in place of the one that the module saw.
  writeLauncher(
      "double() { i=0; while [ $i -lt $2 ]; do cat $1 $1 >home/more; mv home/more $1; i=$((i+1)); done; }\n"
      "double reads.fastq 15; gzip -c reads.fastq >home/packed; double home/packed 14\n"
      "mv home/packed reads.fastq; echo $$ >home/id");
  const struct {
    Signal signal;
    int status;
    std::size_t left;
  } rows[] = {{Signal::Quit, 130, 0}, {Signal::Kill, 137, 1}};
  for (const auto& row : rows) {
    writeWholeFile(at("home/id"), "");
    writeWholeFile(at("reads.fastq"), kRead);
    const auto killed = runAndSignal(call("a.syntax"), row.signal, [&](int sent) {
      if (sent > 0 || !analysisRuns()) return false;
      EXPECT_EQ(runProgram(call("nothing.syntax")).status, 0);
      EXPECT_EQ(folders().size(), 1u) << "of a session that lives";
      return true;
    });
    if (!killed) GTEST_SKIP() << "this system has no signals to send";
    EXPECT_EQ(killed->status, row.status) << killed->err;
    EXPECT_EQ(folders().size(), row.left);
    for (int i = 0; i < 1000 && analysisRuns(); ++i) {
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_FALSE(analysisRuns());
    EXPECT_EQ(runProgram(call("nothing.syntax")).status, 0);
    EXPECT_TRUE(folders().empty());
  }
}

TEST_F(KilledSession, LosesNoFolderButItsOwn) {
  if (fs::path::preferred_separator == '\\')
    GTEST_SKIP() << "its folder of temporary files is the user's own";
  writeLauncher("ls temp >home/name; exit 1");
  runProgram(call("a.syntax"));
  std::string name = readWholeFile(at("home/name"));
  ASSERT_GT(name.size(), 16u);
  std::erase(name, '\n');
  const auto folder = [&](char digit) {
    return at("temp") / (name.substr(0, name.size() - 16) + std::string(16, digit));
  };
  const auto make = [](const fs::path& path, fs::perms permissions) {
    fs::create_directory(path);
    writeWholeFile(path / "file", "x");
    fs::permissions(path, permissions);
  };
  // Abandoned while they were made or removed.
  fs::create_directory(folder('0'));
  fs::permissions(folder('0'), fs::perms::owner_all);
  make(folder('1'), fs::perms::owner_all);
  // Another program's, or another user's.
  make(folder('2'), fs::perms::owner_all | fs::perms::group_exec);
  make(folder('g'), fs::perms::owner_all);
  make(at("temp/genostat-0123456789abcdef"), fs::perms::owner_all);
  fs::create_directory_symlink(folder('1'), folder('3'));
  make(at("kept"), fs::perms::owner_all);
  fs::create_directory_symlink(at("kept"), folder('4'));
  make(folder('5'), fs::perms::owner_all);
  const bool isRoot = std::system(("chown 1 '" + folder('5').string() + "' 2>/dev/null").c_str()) == 0;
  EXPECT_EQ(runProgram(call("nothing.syntax")).status, 0);
  EXPECT_FALSE(fs::exists(folder('0')));
  EXPECT_FALSE(fs::exists(folder('1')));
  EXPECT_EQ(folders().size(), isRoot ? 6u : 5u);
  EXPECT_TRUE(fs::exists(at("kept/file")));
}

}  // namespace
}  // namespace genostat::test
