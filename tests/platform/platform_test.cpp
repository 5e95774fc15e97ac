// What the module asks of the system: files, child processes and their trees.
#include <gtest/gtest.h>

#include <fstream>
#include <limits>
#include <thread>

#include "platform/files.h"
#include "platform/process.h"
#include "run/launch_command.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/test_host.h"

namespace genostat {
namespace {

std::unique_ptr<platform::ChildProcess> start(const test::TestHost& host) {
  const std::string base = host.home().string() + platform::kPathSeparator;
  return platform::ChildProcess::start(
      launchCommand(base + "statisticspython3", base + "genostat.pyc", "e30="));
}

TEST(Files, AreNotFolders) {
  const test::TemporaryFolder folder;
  const std::string file = folder.narrow("a");
  std::ofstream(file) << "x";
  EXPECT_TRUE(platform::fileExists(file));
  EXPECT_FALSE(platform::directoryExists(file));
  EXPECT_FALSE(platform::fileExists(folder.narrow()));
  EXPECT_TRUE(platform::directoryExists(folder.narrow()));
  EXPECT_FALSE(platform::fileExists(folder.narrow("b")));
  EXPECT_TRUE(platform::removeIfExists(file));
  EXPECT_FALSE(platform::fileExists(file));
  EXPECT_TRUE(platform::removeIfExists(file));
  EXPECT_TRUE(platform::removeIfExists(folder.narrow()));
  EXPECT_TRUE(platform::directoryExists(folder.narrow())) << "a folder is left alone";
}

TEST(ChildProcess, GivesItsExitCodeAndKeepsItsId) {
  test::TestHost host;
  for (const int code : {0, 1, 77, 255}) {
    host.plan("exit " + std::to_string(code));
    const auto process = start(host);
    ASSERT_TRUE(process);
    EXPECT_GT(process->id(), 0);
    EXPECT_EQ(process->wait(), static_cast<std::uint32_t>(code));
    EXPECT_EQ(process->wait(), static_cast<std::uint32_t>(code)) << "its end stays known";
    // Ending the dead process again must reach nobody else.
    platform::killProcessTree(process->id());
  }
  host.removeLauncher();
  EXPECT_FALSE(start(host));
}

TEST(ChildProcess, StartsWithQuotesBlanksAndBytesInItsArguments) {
  test::TestHost host;
  host.plan("record\nexit 0");
  const std::string base = host.home().string() + platform::kPathSeparator;
  const auto process = platform::ChildProcess::start(
      launchCommand(base + "statisticspython3", base + "my script.pyc", "QUJD/+=="));
  ASSERT_TRUE(process);
  EXPECT_EQ(process->wait(), 0u);
  std::ifstream file(host.home() / "arguments.txt");
  std::string line;
  std::getline(file, line);
  EXPECT_EQ(line.substr(0, line.rfind('|')), "2|" + base + "my script.pyc|QUJD/+==");
}

TEST(KillProcessTree, EndsEveryGenerationAndWakesTheWaiter) {
  test::TestHost host;
  host.plan("child\nbeat");
  const auto process = start(host);
  ASSERT_TRUE(process);
  std::uint32_t exitCode = 0;
  std::thread waiter([&] { exitCode = process->wait(); });
  for (int i = 0; i < 3000 && host.beats().first < 3; ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  EXPECT_EQ(host.beats().first, 3u);
  EXPECT_TRUE(platform::killProcessTree(process->id()));
  waiter.join();
  EXPECT_NE(exitCode, 0u);
  EXPECT_TRUE(host.beatsStop());
}

TEST(KillProcessTree, TakesNoIdForEverybody) {
  // On POSIX systems -1 stands for every process, 0 for the own group.
  for (const std::int32_t id : {0, -1, -2, std::numeric_limits<std::int32_t>::min()}) {
    EXPECT_FALSE(platform::killProcessTree(id)) << id;
  }
  EXPECT_FALSE(platform::killProcessTree(std::numeric_limits<std::int32_t>::max())) << "nobody has this id";
}

// A host that names itself, and one that does not but is the parent.
TEST(Lifeline, ShowsThatTheHostWasKilled) {
  for (const char* role : {"named", "unnamed"}) {
    if (role == std::string("unnamed") && platform::kPathSeparator == '\\') continue;
    const test::TemporaryFolder folder;
    platform::LaunchCommand command;
    command.launcher = GENOSTAT_BIN_DIR "/analysis_stub";
    command.script = folder.narrow();
    command.payload = role;
    const std::string line = "\"" + command.launcher + "\" \"" + command.script + "\" " + role;
    command.commandLine.assign(line.begin(), line.end());
    const auto host = platform::ChildProcess::start(command);
    ASSERT_TRUE(host);
    EXPECT_EQ(host->wait(), 0u) << role << ": it is not gone while it lives";
    bool gone = false;
    for (int i = 0; i < 1000 && !gone; ++i) {
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
      gone = platform::fileExists(folder.narrow("gone"));
    }
    EXPECT_TRUE(gone) << role;
  }
}

}  // namespace
}  // namespace genostat
