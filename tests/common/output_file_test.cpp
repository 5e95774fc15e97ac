// Files that appear whole or not at all, and targets that are no files.
#include "common/files/output_file.h"

#include <gtest/gtest.h>

#include <thread>

#include "tests/support/run_program.h"
#include "tests/support/temporary_folder.h"

namespace genostat::common {
namespace {

namespace fs = std::filesystem;

using Names = std::vector<std::string>;

TEST(OutputFile, AppearsByItsCommitAlone) {
  const test::TemporaryFolder folder;
  const fs::path target = folder.path() / "r.csv";
  test::writeWholeFile(target, "old");
  test::writeWholeFile(folder.path() / "77.genostat-part", "of a killed run");
  {
    OutputFile file(target);
    file.write("ha");
    EXPECT_EQ(test::namesIn(folder.path()).size(), 3U);
    file.write("lf");
  }
  EXPECT_EQ(test::namesIn(folder.path()), (Names{"77.genostat-part", "r.csv"}));
  EXPECT_EQ(test::readWholeFile(target), "old");
  writeFile(target, "new");
  EXPECT_EQ(test::readWholeFile(target), "new");
  EXPECT_EQ(test::namesIn(folder.path()), Names{"r.csv"});
}

TEST(OutputFile, FollowsLinksAndFillsPipes) {
  const test::TemporaryFolder folder;
  const auto shell = [&](const std::string& script) {
    return test::runProgram({"/bin/sh", {"-c", script}, folder.path(), {}, {}}).status;
  };
  if (!fs::exists("/bin/sh") || fs::path::preferred_separator == '\\' ||
      shell(
          "mkdir real && echo old >real/r.csv && ln -s real/r.csv link && ln -s nothing lost && mkfifo pipe"))
    GTEST_SKIP() << "this system has no links or no pipes";
  writeFile(folder.path() / "link", "new");
  EXPECT_TRUE(fs::is_symlink(folder.path() / "link"));
  EXPECT_EQ(test::readWholeFile(folder.path() / "real" / "r.csv"), "new");
  writeFile(folder.path() / "lost", "found");
  EXPECT_EQ(test::readWholeFile(folder.path() / "lost"), "found");
  // Made and given up, as a job does before it begins: the reader must not see an end.
  { const OutputFile trial(folder.path() / "pipe"); }
  std::string read;
  std::jthread reader([&] { read = test::readWholeFile(folder.path() / "pipe"); });
  writeFile(folder.path() / "pipe", "flow");
  reader.join();
  EXPECT_EQ(read, "flow");
  EXPECT_EQ(test::namesIn(folder.path()), (Names{"link", "lost", "pipe", "real"}));
}

}  // namespace
}  // namespace genostat::common
