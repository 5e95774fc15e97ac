// The line editor's parts that can be tried without a terminal.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/file.h>
#include <unistd.h>

#include <chrono>
#include <clocale>
#include <thread>

#include "platform/posix/drawn_line.h"
#include "platform/posix/line_history.h"
#include "tests/support/run_program.h"
#include "tests/support/temporary_folder.h"

namespace genostat::test {
namespace {

namespace fs = std::filesystem;
using platform::LineHistory;

TEST(LineHistory, KeepsEntriesOfSeveralProgramsAtOnce) {
  const TemporaryFolder folder;
  const fs::path file = folder.path() / "state" / "history";
  EXPECT_TRUE(LineHistory(file).load().empty());
  EXPECT_FALSE(fs::exists(folder.path() / "state"));
  const std::vector<std::string> entries = {"GENOSTAT\n  /JOB FILE='a\\nb'.", "\\", "übung\n"};
  for (const std::string& entry : entries) {
    ASSERT_TRUE(LineHistory(file).append(entry));
  }
  EXPECT_EQ(LineHistory(file).load(), entries);
  EXPECT_EQ(fs::status(file).permissions(), fs::perms::owner_read | fs::perms::owner_write);

  // More than twice as many as are kept, from two sides, while a third reads and cuts.
  const auto write = [&](const std::string& name) {
    for (std::size_t i = 0; i < 2 * LineHistory::kMostEntries; ++i) {
      EXPECT_TRUE(LineHistory(file).append(name + std::to_string(i)));
    }
  };
  std::thread first(write, "a");
  std::thread second(write, "b");
  for (int i = 0; i < 20; ++i) {
    for (const std::string& entry : LineHistory(file).load()) {
      const bool written = entry.front() == 'a' || entry.front() == 'b';
      EXPECT_TRUE(!written || entry.find_first_not_of("0123456789", 1) == std::string::npos) << entry;
    }
  }
  first.join();
  second.join();
  const std::vector<std::string> kept = LineHistory(file).load();
  EXPECT_EQ(kept.size(), LineHistory::kMostEntries);
  const std::string last = std::to_string(2 * LineHistory::kMostEntries - 1);
  EXPECT_EQ(kept.back().substr(1), last);
}

TEST(LineHistory, WaitsForAnotherProgramThroughSignals) {
  const TemporaryFolder folder;
  const fs::path file = folder.path() / "history";
  ASSERT_TRUE(LineHistory(file).append("one"));
  struct sigaction interrupting = {};
  struct sigaction before = {};
  interrupting.sa_handler = [](int) {};  // and calls are not made again by the system
  sigaction(SIGUSR1, &interrupting, &before);
  const int lock = open((file.string() + ".lock").c_str(), O_RDWR | O_CLOEXEC);
  ASSERT_EQ(flock(lock, LOCK_EX), 0);
  std::thread other([lock, writer = pthread_self()] {
    for (int i = 0; i < 10; ++i) {
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
      pthread_kill(writer, SIGUSR1);
    }
    close(lock);
  });
  EXPECT_TRUE(LineHistory(file).append("two"));
  other.join();
  sigaction(SIGUSR1, &before, nullptr);
  EXPECT_EQ(LineHistory(file).load(), (std::vector<std::string>{"one", "two"}));
}

TEST(LineHistory, SaysThatItCannotBeKept) {
  const TemporaryFolder folder;
  writeWholeFile(folder.path() / "state", "a file");
  const LineHistory history(folder.path() / "state" / "history");
  EXPECT_FALSE(history.append("x"));
  EXPECT_TRUE(history.load().empty());
  EXPECT_TRUE(LineHistory({}).append("x"));
}

TEST(DrawnLine, FollowsTheTerminalsRows) {
  ASSERT_NE(std::setlocale(LC_CTYPE, "C.UTF-8"), nullptr);
  const struct {
    const wchar_t* text;
    int row;
  } rows[] = {
      {L"", 0},
      {L"123", 0},
      {L"1234", 1},  // the cursor goes to the next row
      {L"äöüß", 1},
      {L"12345678901234", 2},
      {L"日", 0},
      {L"12日", 1},
      {L"123日日日日日", 2},  // no half of a character at the end of a row
      {L"a\nb", 1},
      {L"a\n\nb", 2},
      {L"\t", 0},
      {L"1\t2", 0},
      {L"12\t2", 1},
      {L"123\x01", 1},
      {L"e\u0301e\u0301e\u0301", 0},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(platform::rowAfter(row.text, 6, 10), row.row) << std::wstring(row.text).size();
  }
}

}  // namespace
}  // namespace genostat::test
