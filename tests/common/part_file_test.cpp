// Part files of the living and the dead.
#include "common/files/part_file.h"

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <thread>

#include "platform/process.h"
#include "run/launch_command.h"
#include "tests/support/run_program.h"
#include "tests/support/test_host.h"

namespace genostat::common {
namespace {

namespace fs = std::filesystem;

using Names = std::vector<std::string>;

TEST(PartFile, OutlivesNoWriterForLong) {
  test::TestHost host;
  host.plan("part\nbeat");
  const std::string base = host.home().string() + "/";
  const auto writer =
      platform::ChildProcess::start(launchCommand(base + "statisticspython3", base + "genostat.pyc", "e30="));
  ASSERT_TRUE(writer);
  for (int i = 0; i < 3000 && host.beats().first < 1; ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  const auto parts = [&] {
    Names names = test::namesIn(host.home());
    std::erase_if(names, [](const std::string& name) { return !name.ends_with("part"); });
    return names;
  };
  ASSERT_EQ(parts().size(), 1U);
  removeAbandonedParts(host.home());
  EXPECT_EQ(parts().size(), 1U) << "its writer is alive";
  platform::killProcessTree(writer->id());
  writer->wait();
  EXPECT_TRUE(host.beatsStop());
  EXPECT_EQ(parts().size(), 1U);
  removeAbandonedParts(host.home());
  EXPECT_EQ(parts(), Names{});
}

TEST(RemoveAbandonedParts, TakesNothingElse) {
  const test::TemporaryFolder folder;
  const Names others = {"1.genostat-part.txt", "1.part", "1a.genostat-part", "result.csv.genostat-part"};
  for (const std::string& name : others) {
    test::writeWholeFile(folder.path() / name, "");
  }
  fs::create_directory(folder.path() / "2.genostat-part");
  test::writeWholeFile(folder.path() / "3.genostat-part", "");
  removeAbandonedParts(folder.path());
  removeAbandonedParts(folder.path() / "none");
  Names left = others;
  left.insert(left.begin() + 3, "2.genostat-part");
  EXPECT_EQ(test::namesIn(folder.path()), left);
}

TEST(PartFile, KeepsThePermissionsOfWhatItReplaces) {
  const test::TemporaryFolder folder;
  const fs::path target = folder.path() / "report.html";
  test::writeWholeFile(target, "old");
  fs::permissions(target, fs::perms::owner_read | fs::perms::owner_write);
  const fs::perms before = fs::status(target).permissions();
  platform::LockedFile file = createPart(folder.path());
  file.write("new");
  file.moveTo(target);
  EXPECT_EQ(test::readWholeFile(target), "new");
  EXPECT_EQ(fs::status(target).permissions(), before);
}

// Each file counts as another process's would: locks belong to what was opened, not to who opened it.
TEST(PartFile, MayBeWrittenByManyAtOnce) {
  const test::TemporaryFolder folder;
  const fs::path target = folder.path() / "result.csv";
  std::atomic<int> failures = 0;
  {
    std::vector<std::jthread> writers;
    for (char letter = 'a'; letter < 'e'; ++letter) {
      writers.emplace_back([&, letter] {
        for (int round = 0; round < 100; ++round) {
          try {
            platform::LockedFile file = createPart(folder.path());
            file.write(std::string(5000, letter));
            if (round % 3 == 0) continue;
            file.moveTo(target);
          } catch (const std::runtime_error&) {
            ++failures;
          }
          removeAbandonedParts(folder.path());
        }
      });
    }
  }
  EXPECT_EQ(failures, 0);
  EXPECT_EQ(test::namesIn(folder.path()), Names{"result.csv"});
  const std::string text = test::readWholeFile(target);
  EXPECT_EQ(text, std::string(5000, text.empty() ? '?' : text[0]));
}

}  // namespace
}  // namespace genostat::common
