// Part files of the living and the dead.
#include "common/files/part_file.h"

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <thread>

#include "platform/process.h"
#include "run/launch_command.h"
#include "tests/support/abandoned_part.h"
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
  const Names others = {"-1-0.genostat-part",         "1.genostat-part",        "1.part",
                        "node-1-0.genostat-part.txt", "node-1-x.genostat-part", "node-1.genostat-part"};
  for (const std::string& name : others) {
    test::writeWholeFile(folder.path() / name, "");
    fs::last_write_time(folder.path() / name, fs::file_time_type::clock::now() - std::chrono::hours(25));
  }
  const fs::path own = test::leaveAbandonedPart(folder.path());
  removeAbandonedParts(folder.path());
  removeAbandonedParts(folder.path() / "none");
  EXPECT_EQ(test::namesIn(folder.path()), others);
  fs::create_directory(own);
  removeAbandonedParts(folder.path());
  EXPECT_TRUE(fs::is_directory(own));
}

// Its writer's lock may not be seen here.
TEST(RemoveAbandonedParts, LeavesThoseOfOtherComputersForADay) {
  const test::TemporaryFolder folder;
  const auto now = fs::file_time_type::clock::now();
  for (const auto& [name, hours] :
       {std::pair("far-away_7-12-0.genostat-part", 23), std::pair("far-away_7-12-1.genostat-part", 25)}) {
    test::writeWholeFile(folder.path() / name, "half");
    fs::last_write_time(folder.path() / name, now - std::chrono::hours(hours));
  }
  removeAbandonedParts(folder.path());
  EXPECT_EQ(test::namesIn(folder.path()), Names{"far-away_7-12-0.genostat-part"});
}

TEST(RemoveAbandonedParts, LooksOnceIntoAFolder) {
  const test::TemporaryFolder base;
  // Other tests' folders may have had the same name.
  const fs::path folder = base.path() / "looked at once";
  fs::create_directory(folder);
  Names seen;
  const auto look = [&] {
    test::leaveAbandonedPart(folder);
    removeAbandonedPartsOnce(folder, [&](const fs::path& file) { seen.push_back(file.filename().string()); });
    return test::namesIn(folder).size();
  };
  test::writeWholeFile(folder / "other", "");
  EXPECT_EQ(look(), 1U);
  EXPECT_EQ(look(), 2U);
  EXPECT_EQ(seen, Names{"other"});
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

TEST(PartFile, IsItsOwnersUntilItIsDone) {
  const test::TemporaryFolder folder;
  test::writeWholeFile(folder.path() / "~plain", "");
  const auto permissions = [&](const std::string& name) {
    return fs::status(folder.path() / name).permissions();
  };
  platform::LockedFile file = createPart(folder.path());
  const std::string name = test::namesIn(folder.path()).front();
  EXPECT_TRUE(name.ends_with(".genostat-part")) << name;
  if (fs::path::preferred_separator == '/') {
    EXPECT_EQ(permissions(name), fs::perms::owner_read | fs::perms::owner_write);
  }
  file.moveTo(folder.path() / "r.csv");
  EXPECT_EQ(permissions("r.csv"), permissions("~plain"));
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
