#include "tests/support/test_host.h"

#include <algorithm>
#include <chrono>
#include <fstream>
#include <thread>

#include "host/message_bus.h"
#include "standalone/services/current.h"
#include "standalone/services/host_folders.h"
#include "tests/support/stub_launcher.h"

namespace genostat::test {

namespace fs = std::filesystem;

void RecordingAdapter::postClientMessage(std::int32_t messageId, const ZorvwMsg* message) {
  std::string text;
  std::function<void(const std::string&)> hook;
  {
    const std::lock_guard lock(mutex_);
    // Copied here: once the waiting test has seen the message, this object may be gone.
    hook = onMessage;
    if (messageId == ZorvwMsgStartGenomicProcessing::kMessageId) {
      const auto& start = dynamic_cast<const ZorvwMsgStartGenomicProcessing&>(*message);
      text = "start " + start.jobName + (start.started ? " running" : " queued");
    } else {
      const auto& end = dynamic_cast<const ZorvwMsgEndGenomicProcessing&>(*message);
      text = "end " + end.jobName + " [" + end.message + "]";
      ++ends_;
    }
    messages_.push_back(text);
    changed_.notify_all();
  }
  if (hook) hook(text);
}

std::vector<std::string> RecordingAdapter::messages() const {
  const std::lock_guard lock(mutex_);
  return messages_;
}

bool RecordingAdapter::waitForEnds(std::size_t count) const {
  std::unique_lock lock(mutex_);
  return changed_.wait_for(lock, std::chrono::seconds(30), [&] { return ends_ >= count; });
}

bool RecordingAdapter::waitFor(const std::string& message) const {
  std::unique_lock lock(mutex_);
  return changed_.wait_for(lock, std::chrono::seconds(30), [&] {
    return std::find(messages_.begin(), messages_.end(), message) != messages_.end();
  });
}

std::size_t RecordingAdapter::ends() const {
  const std::lock_guard lock(mutex_);
  return ends_;
}

TestHost::TestHost() : home_(folder_.path() / "home"), temp_(folder_.path() / "temp") {
  fs::create_directory(home_);
  fs::create_directory(temp_);
  standalone::setHostFolders({temp_, home_, {}});
  standalone::setCurrentAdapter(&adapter);
  writeStubLauncher(home_);
}

TestHost::~TestHost() {
  standalone::setCurrentAdapter(nullptr);
}

void TestHost::plan(const std::string& steps) {
  std::ofstream(home_ / "plan.txt", std::ios::binary) << steps << '\n';
}

void TestHost::signal(const std::string& name) {
  std::ofstream(home_ / name) << '\n';
}

void TestHost::removeLauncher() {
  fs::remove(home_ / kStubLauncher);
}

std::pair<std::size_t, std::uintmax_t> TestHost::beats() const {
  std::pair<std::size_t, std::uintmax_t> sum = {0, 0};
  for (const fs::directory_entry& entry : fs::directory_iterator(home_)) {
    if (!entry.path().filename().string().starts_with("beat_")) continue;
    ++sum.first;
    sum.second += entry.file_size();
  }
  return sum;
}

bool TestHost::beatsStop() const {
  // A process that lives beats every 10 ms, so 500 ms of silence are the end.
  for (int i = 0; i < 20; ++i) {
    const auto before = beats();
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    if (beats() == before) return true;
  }
  return false;
}

std::vector<std::string> TestHost::temporaryFiles() const {
  std::vector<std::string> names;
  for (const fs::directory_entry& entry : fs::directory_iterator(temp_)) {
    names.push_back(entry.path().filename().string());
  }
  return names;
}

}  // namespace genostat::test
