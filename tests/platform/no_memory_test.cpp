// Starting and ending processes when memory runs out.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <new>
#include <thread>

#include "platform/process.h"
#include "tests/support/test_host.h"

namespace {
thread_local int allocationsLeft = -1;  // then all of this thread fail; below 0 none does
}

void* operator new(std::size_t size) {
  void* const memory = allocationsLeft == 0 ? nullptr : std::malloc(size);
  if (memory == nullptr) throw std::bad_alloc();
  if (allocationsLeft > 0) --allocationsLeft;
  return memory;
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}

namespace genostat {
namespace {

TEST(ChildProcess, IsOwnedOrNotStartedWithoutMemory) {
  test::TestHost host;
  const std::string started = (host.home() / "started").string();
  const platform::LaunchCommand command = {{}, (host.home() / "statisticspython3.sh").string(), "", ""};
  std::ofstream(command.launcher) << "#!/bin/sh\necho once >> '" << started << "'\nexec sleep 60\n";
  std::unique_ptr<platform::ChildProcess> process;
  int failures = 0;
  for (; !process && failures < 100; ++failures) {
    allocationsLeft = failures;
    try {
      process = platform::ChildProcess::start(command);
    } catch (const std::bad_alloc&) {
    }
    allocationsLeft = -1;
  }
  ASSERT_TRUE(process);
  EXPECT_GT(failures, 2) << "with memory from the beginning there is nothing to see";
  std::this_thread::sleep_for(std::chrono::milliseconds(500));
  std::ifstream file(started);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), "once\n");

  allocationsLeft = 0;
  EXPECT_TRUE(platform::killProcessTree(process->id()));
  allocationsLeft = -1;
  EXPECT_EQ(process->wait(), 128u + 9u);
}

}  // namespace
}  // namespace genostat
