// Files that appear whole or not at all, and targets that are no files.
#include "common/files/output_file.h"

#include <gtest/gtest.h>

#include <thread>

#include "tests/support/abandoned_part.h"
#include "tests/support/run_program.h"
#include "tests/support/temporary_folder.h"

namespace genostat::common {
namespace {

namespace fs = std::filesystem;

using Names = std::vector<std::string>;

TEST(OutputFile, LeavesNothingUntilItIsWritten) {
  const test::TemporaryFolder base;
  // No folder of another test, whose name may come again: each is cleared up once.
  const fs::path folder = base.path() / "own";
  fs::create_directory(folder);
  const fs::path target = folder / "r.csv";
  test::writeWholeFile(target, "old");
  test::leaveAbandonedPart(folder);
  const OutputFile file(target);
  EXPECT_EQ(test::namesIn(folder), Names{"r.csv"});
  EXPECT_EQ(test::readWholeFile(target), "old");
  file.write("new");
  EXPECT_EQ(test::readWholeFile(target), "new");
  EXPECT_EQ(test::namesIn(folder), Names{"r.csv"});
  EXPECT_TRUE(file.isSameAs(folder / "none" / ".." / "r.csv"));
  EXPECT_FALSE(file.isSameAs(folder / "none" / "r.csv"));
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

TEST(OutputFile, TakesALinksPlaceWhereOthersMayHavePutIt) {
  const test::TemporaryFolder folder;
  const fs::path target = folder.path() / "r.csv";
  const auto tryBoth = [&] {
    const OutputFile file(target, PlaceLink::Replace);
    file.write("new");
    writeFile(target, "newer", PlaceLink::Replace);
  };
  tryBoth();
  EXPECT_EQ(test::readWholeFile(target), "newer");
  test::writeWholeFile(folder.path() / "precious", "precious");
  std::error_code refused;
  for (const char* leads : {"precious", "nothing"}) {
    fs::remove(target);
    fs::create_symlink(leads, target, refused);
    if (refused) GTEST_SKIP() << "this system makes no links";
    tryBoth();
    EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(target)));
  }
  fs::create_symlink("/dev/null", folder.path() / "null");
  writeFile(folder.path() / "null", "new", PlaceLink::Replace);
  EXPECT_EQ(test::readWholeFile(folder.path() / "null"), "new");
  EXPECT_THROW(writeFile("/dev/null", "new", PlaceLink::Replace), std::runtime_error);
  EXPECT_EQ(test::readWholeFile(folder.path() / "precious"), "precious");
  // Nor at the names that part files would have.
  const fs::path part = test::leaveAbandonedPart(folder.path());
  fs::remove(part);
  fs::create_symlink("precious", part);
  writeFile(target, "newest", PlaceLink::Replace);
  EXPECT_EQ(test::readWholeFile(folder.path() / "precious"), "precious");
  // The folder itself, where it is one that the program makes.
  fs::create_directory_symlink(".", folder.path() / "folder");
  EXPECT_THROW(
      writeFile(folder.path() / "folder" / "r.csv", "", PlaceLink::Replace, LockedFile::FolderLink::Refuse),
      std::system_error);
}

}  // namespace
}  // namespace genostat::common
