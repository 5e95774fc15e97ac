// Ending many processes at once, as POSIX systems have them.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <thread>

#include "platform/process.h"
#include "tests/support/test_host.h"

namespace genostat {
namespace {

// 20 shells with 19 sleepers each, and a line of 20 shells; each shell that has started all of its own says
// so.
constexpr char kCrowd[] = R"(
line() {
  if [ $1 -gt 0 ]; then (line $(($1 - 1)); wait); else sleep 60 & echo ready; fi
}
line 20 &
for i in 0 1 2 3 4 5 6 7 8 9 a b c d e f g h i j; do
  (for j in 0 1 2 3 4 5 6 7 8 9 a b c d e f g h i; do sleep 60 & done; echo ready; wait) &
done
wait
)";

// What all writers of a pipe have written, up to `limit` bytes; at their end, or after 30 s, what there is.
std::string readPipe(int pipe, std::size_t limit) {
  std::string text;
  pollfd waiting = {pipe, POLLIN, 0};
  while (text.size() < limit && poll(&waiting, 1, 30'000) > 0) {
    char buffer[256];
    const ssize_t size = read(pipe, buffer, sizeof(buffer));
    if (size <= 0) break;
    text.append(buffer, static_cast<std::size_t>(size));
  }
  return text;
}

TEST(KillProcessTree, EndsHundredsInAMoment) {
  test::TestHost host;
  const std::string pipePath = (host.home() / "pipe").string();
  ASSERT_EQ(mkfifo(pipePath.c_str(), 0600), 0);
  const int pipe = open(pipePath.c_str(), O_RDONLY | O_NONBLOCK);
  const std::string launcher = (host.home() / "statisticspython3.sh").string();
  std::ofstream(launcher) << "#!/bin/sh\nexec >'" << pipePath << "'" << kCrowd;
  const auto process = platform::ChildProcess::start({{}, launcher, "", ""});
  ASSERT_TRUE(process);
  std::string ready;
  for (int i = 0; i < 21; ++i)
    ready += "ready\n";
  EXPECT_EQ(readPipe(pipe, ready.size()), ready);
  std::thread waiter([&] { process->wait(); });
  const auto start = std::chrono::steady_clock::now();
  EXPECT_TRUE(platform::killProcessTree(process->id()));
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
  waiter.join();
  pollfd ended = {pipe, POLLIN, 0};
  EXPECT_EQ(poll(&ended, 1, 10'000), 1) << "somebody still holds the pipe";
  EXPECT_EQ(readPipe(pipe, 1), "");
  close(pipe);
}

}  // namespace
}  // namespace genostat
