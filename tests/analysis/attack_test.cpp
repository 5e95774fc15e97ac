// Two users of one folder: what the other one puts where a launched analysis writes must not cost its user
// any other file, nor make it wait.
#include <gtest/gtest.h>

#include "tests/analysis/base64_text.h"
#include "tests/support/run_program.h"
#include "tests/support/temporary_folder.h"

namespace genostat::test {
namespace {

namespace fs = std::filesystem;

constexpr const char* kVictim = "65533";
constexpr const char* kAttacker = "65534";

class TwoUsers : public testing::Test {
 protected:
  void SetUp() override {
    if (fs::path::preferred_separator == '\\') GTEST_SKIP() << "this system has no such users";
    if (as(kAttacker, "true").status != 0) GTEST_SKIP() << "only the superuser can play two users";
    // Where the tests are built, others may have no access.
    fs::copy_file(fs::path(GENOSTAT_BIN_DIR) / "genostat-analysis", at("analysis"));
    shell(
        "chmod 755 . analysis; mkdir home; echo precious >home/precious; cp home/precious "
        "home/fastqc_data.txt; "
        "chown -R 65533 home; chmod -R go= home");
  }

  fs::path at(const std::string& name) const { return folder_.path() / name; }
  ProgramResult shell(const std::string& script) const {
    return runProgram({"/bin/sh", {"-c", script}, folder_.path(), {}, {}});
  }
  ProgramResult as(const std::string& user, const std::string& script) const {
    return runProgram({"/usr/bin/setpriv",
                       {"--reuid=" + user, "--regid=" + user, "--clear-groups", "/bin/sh", "-c", script},
                       folder_.path(),
                       {},
                       {}});
  }
  // A new folder that both may write into.
  void share(const std::string& mode) const {
    shell("rm -rf shared; mkdir shared; chmod " + mode +
          " shared; printf '@a\\nG\\n+\\n5\\n' >shared/good.fq");
  }

  TemporaryFolder folder_;
};

TEST_F(TwoUsers, NothingOfTheVictimIsOverwritten) {
  const struct {
    const char* what;
    const char* trap;   // made by the attacker
    const char* input;  // of the victim's job
    int status;
    int stickyStatus;  // where nobody can replace what is another's, as in a system's temporary folder
  } attacks[] = {
      {"link to a file", "ln -s ../home/precious r.csv", "good.fq", 0, 9},
      {"link to nothing", "ln -s ../home/new r.csv", "good.fq", 0, 9},
      {"link to the input", "ln -s good.fq r.csv", "good.fq", 9, 9},
      {"pipe", "mkfifo -m 666 r.csv", "good.fq", 9, 9},
      {"pipe as progress", "mkfifo -m 666 r.csv.progress", "good.fq", 0, 0},
      {"link as error details", "ln -s ../home/precious r.error", "none.fq", 2, 2},
      {"pipe as error details", "mkfifo -m 666 r.error", "none.fq", 2, 2},
      {"link as a sample's data",
       "mkdir -m 777 good_fastqc; ln -s ../../home/precious good_fastqc/fastqc_data.txt", "good.fq", 0, 0},
      {"link as a sample's folder", "ln -s ../home good_fastqc", "good.fq", 0, 0},
      {"pipe as a part file",
       "mkfifo -m 666 $(uname -n)-1-0.genostat-part; ln -s ../home/precious $(uname -n)-2-0.genostat-part",
       "good.fq", 0, 0},
  };
  for (const bool sticky : {false, true}) {
    for (const auto& attack : attacks) {
      SCOPED_TRACE(std::string(attack.what) + (sticky ? ", sticky" : ""));
      share(sticky ? "1777" : "777");
      EXPECT_EQ(as(kAttacker, "cd shared && " + std::string(attack.trap)).status, 0);
      const std::string payload = toBase64(
          R"({"fastq_data":[{"adapter":"NONE","custom_sequence":"","CSV_Path":"shared/r.csv","files":["shared/)" +
          std::string(attack.input) + "\"]}]}");
      const ProgramResult result =
          as(kVictim, "GENOSTAT_FASTQC_DATA=shared exec timeout 20 ./analysis script " + payload);
      EXPECT_EQ(result.status, sticky ? attack.stickyStatus : attack.status) << result.err;
      if (result.status == 0) {
        EXPECT_FALSE(fs::is_symlink(at("shared/r.csv")));
        EXPECT_NE(readWholeFile(at("shared/r.csv")).find("\ngood,NONE,1,"), std::string::npos);
      }
      EXPECT_EQ(namesIn(at("home")), (std::vector<std::string>{"fastqc_data.txt", "precious"}));
      EXPECT_EQ(readWholeFile(at("home/precious")) + readWholeFile(at("home/fastqc_data.txt")),
                "precious\nprecious\n");
      EXPECT_EQ(readWholeFile(at("shared/good.fq")), "@a\nG\n+\n5\n");
    }
  }
}

// A person who names a link means the file behind it.
TEST_F(TwoUsers, PeoplesOwnLinksAreFollowed) {
  share("700");
  shell("chown 65533 shared; ln -s ../home/precious shared/link.csv");
  EXPECT_EQ(as(kVictim, "./analysis qc shared/good.fq --csv shared/link.csv").status, 0);
  EXPECT_TRUE(fs::is_symlink(at("shared/link.csv")));
  EXPECT_NE(readWholeFile(at("home/precious")), "precious\n");
}

}  // namespace
}  // namespace genostat::test
