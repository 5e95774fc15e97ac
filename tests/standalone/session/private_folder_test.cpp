#include "standalone/session/private_folder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "tests/support/run_program.h"
#include "tests/support/temporary_folder.h"

namespace genostat::test {
namespace {

using standalone::PrivateFolder;

TEST(PrivateFolder, StaysWhileItsSessionLives) {
  const TemporaryFolder base;
  std::atomic<bool> ended{false};
  std::atomic<int> lost{0};
  const auto live = [&] {
    for (int i = 0; i < 100; ++i) {
      const PrivateFolder folder(base.path());
      writeWholeFile(folder.path() / "1.csv", "x");
      std::this_thread::yield();
      if (readWholeFile(folder.path() / "1.csv") != "x") ++lost;
    }
  };
  const auto sweep = [&] {
    while (!ended) {
      standalone::removeAbandonedFolders(base.path());
    }
  };
  std::vector<std::thread> sweepers;
  std::vector<std::thread> sessions;
  for (int i = 0; i < 2; ++i) {
    sweepers.emplace_back(sweep);
    sessions.emplace_back(live);
  }
  for (std::thread& session : sessions) {
    session.join();
  }
  ended = true;
  for (std::thread& sweeper : sweepers) {
    sweeper.join();
  }
  EXPECT_EQ(lost, 0);
  standalone::removeAbandonedFolders(base.path());
  EXPECT_TRUE(namesIn(base.path()).empty());
}

}  // namespace
}  // namespace genostat::test
