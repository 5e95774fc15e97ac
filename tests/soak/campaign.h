// What the programs of the campaigns share: their options, how they report, what a process holds, a cheap
// launcher.
#pragma once

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <mutex>
#include <string>

#include "platform/process.h"
#include "platform/running_program.h"

// Of the sanitizers' run-time libraries; missing without them.
extern "C" [[gnu::weak]] std::size_t __sanitizer_get_current_allocated_bytes();

namespace genostat::test {

// What this process holds.
struct ProcessAccount {
  std::ptrdiff_t descriptors = 0;
  std::ptrdiff_t threads = 0;
  std::ptrdiff_t children = 0;  // zombies as well
  std::size_t bytes = 0;        // allocated; 0 where nobody counts them

  static ProcessAccount now() {
    using Entries = std::filesystem::directory_iterator;
    ProcessAccount account;
    account.descriptors = std::distance(Entries("/proc/self/fd"), Entries());
    for (const auto& task : Entries("/proc/self/task")) {
      ++account.threads;
      std::ifstream children(task.path() / "children");
      account.children += std::distance(std::istream_iterator<int>(children), std::istream_iterator<int>());
    }
    if (__sanitizer_get_current_allocated_bytes != nullptr) {
      account.bytes = __sanitizer_get_current_allocated_bytes();
    }
    return account;
  }

  std::string text() const {
    return std::to_string(descriptors) + " descriptors, " + std::to_string(threads) + " threads, " +
           std::to_string(children) + " children, " + std::to_string(bytes) + " bytes";
  }
};

// PROGRAM SECONDS SEED
class Campaign {
 public:
  Campaign(int argc, char** argv)
      : seed(argc == 3 ? static_cast<unsigned>(std::stoul(argv[2])) : 1),
        end_(std::chrono::steady_clock::now() + std::chrono::seconds(argc == 3 ? std::stoi(argv[1]) : 10)) {}

  bool timeLeft() const { return std::chrono::steady_clock::now() < end_; }

  // Any thread. Ends the process with what went wrong unless `holds`.
  template <typename... Parts>
  void require(bool holds, const Parts&... parts) const {
    if (holds) return;
    static std::mutex one;
    const std::lock_guard lock(one);
    std::cerr << "FINDING (seed " << seed << "): ";
    (std::cerr << ... << parts) << std::endl;
    std::_Exit(1);
  }

  // Nothing is held that was not held before, but for memory that libraries keep for later.
  void requireNoMore(const ProcessAccount& before) const {
    constexpr std::size_t kSpareBytes = 1 << 20;
    const ProcessAccount now = ProcessAccount::now();
    require(now.descriptors <= before.descriptors && now.threads <= before.threads &&
                now.children <= before.children && now.bytes <= before.bytes + kSpareBytes,
            "held before: ", before.text(), "; now: ", now.text());
  }

  const unsigned seed;

 private:
  const std::chrono::steady_clock::time_point end_;
};

// A launcher that costs next to nothing (soak_launcher.cpp).
inline void useCheapLauncher(const std::filesystem::path& home) {
  const std::string launcher = std::string("statisticspython3") + platform::kLauncherSuffix;
  std::filesystem::copy_file(platform::programFolder() / "soak_launcher", home / launcher,
                             std::filesystem::copy_options::overwrite_existing);
}

}  // namespace genostat::test
