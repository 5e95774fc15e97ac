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

TEST(OutputFile, LeavesNothingUntilItIsWritten) {
  const test::TemporaryFolder folder;
  const fs::path target = folder.path() / "r.csv";
  test::writeWholeFile(target, "old");
  test::writeWholeFile(folder.path() / "77.genostat-part", "of a killed run");
  const OutputFile file(target);
  EXPECT_EQ(test::namesIn(folder.path()), Names{"r.csv"});
  EXPECT_EQ(test::readWholeFile(target), "old");
  file.write("new");
  EXPECT_EQ(test::readWholeFile(target), "new");
  EXPECT_EQ(test::namesIn(folder.path()), Names{"r.csv"});
  EXPECT_TRUE(file.isSameAs(folder.path() / "none" / ".." / "r.csv"));
  EXPECT_FALSE(file.isSameAs(folder.path() / "none" / "r.csv"));
}

TEST(OutputFile, SaysAtOnceThatNoFileCanStandThere) {
  const test::TemporaryFolder folder;
  for (const auto& [target, reason] :
       {std::pair(folder.path(), std::errc::is_a_directory),
        std::pair(folder.path() / "no" / "r", std::errc::no_such_file_or_directory)}) {
    try {
      const OutputFile file(target);
      ADD_FAILURE() << target;
    } catch (const std::system_error& failure) {
      EXPECT_EQ(failure.code(), reason) << failure.what();
    }
  }
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
  // Tried before a job begins: the reader must not see an end.
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
