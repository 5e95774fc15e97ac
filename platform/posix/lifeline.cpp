#include "platform/lifeline.h"

#include <fcntl.h>
#include <unistd.h>

#include <charconv>
#include <chrono>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>

#include "platform/posix/descriptor.h"

namespace genostat::platform {

namespace {

constexpr const char* kParentVariable = "GENOSTAT_PARENT";
// Asked again and again, since not every kernel lets a program wait for one that is no child of its own.
constexpr std::chrono::milliseconds kPause(200);

// The beginning of a small file of the system.
std::string systemText(const std::string& path) {
  const Handle file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  char buffer[1024];
  const ssize_t size =
      file ? uninterrupted([&] { return read(descriptor(file), buffer, sizeof(buffer)); }) : 0;
  return {buffer, size > 0 ? static_cast<std::size_t>(size) : 0};
}

// When a process began, in ticks since the computer was started; empty for one that has ended. From
// /proc/ID/stat: "ID (name) state parent ...", in which the name may hold anything.
std::string beginningOf(pid_t id) {
  constexpr int kFieldsBetween = 19;  // from the state to the beginning
  const std::string text = systemText("/proc/" + std::to_string(id) + "/stat");
  std::size_t field = text.rfind(')');
  if (field == std::string::npos) return {};
  field += 2;
  if (field >= text.size() || text[field] == 'Z' || text[field] == 'X') return {};
  for (int i = 0; i < kFieldsBetween && field != std::string::npos; ++i) {
    field = text.find(' ', field + 1);
  }
  return field == std::string::npos ? std::string()
                                    : text.substr(field + 1, text.find(' ', field + 1) - field - 1);
}

// Where process ids mean what they mean here: the computer since its start, and the container.
std::string placeOfIds() {
  std::string boot = systemText("/proc/sys/kernel/random/boot_id");
  if (boot.ends_with('\n')) boot.pop_back();
  char container[64] = {};
  const ssize_t size = readlink("/proc/self/ns/pid", container, sizeof(container));
  return boot + ' ' + std::string(container, size > 0 ? static_cast<std::size_t>(size) : 0);
}

struct Parent {
  pid_t id;
  std::string beginning;
};

// "ID BEGINNING PLACE"
std::optional<Parent> namedParent() {
  const char* variable = std::getenv(kParentVariable);
  if (variable == nullptr) return std::nullopt;
  const std::string_view text = variable;
  const std::size_t first = text.find(' ');
  const std::size_t second = text.find(' ', first + 1);
  pid_t id = 0;
  const auto number = std::from_chars(text.data(), text.data() + text.size(), id);
  if (number.ec != std::errc() || second >= text.size() || text.substr(second + 1) != placeOfIds()) {
    return std::nullopt;
  }
  return Parent{id, std::string(text.substr(first + 1, second - first - 1))};
}

}  // namespace

void nameAsParent() {
  const pid_t id = getpid();
  const std::string text = std::to_string(id) + ' ' + beginningOf(id) + ' ' + placeOfIds();
  setenv(kParentVariable, text.c_str(), 1);
}

void onParentGone(std::function<void()> handler) {
  std::optional<Parent> parent = namedParent();
  if (!parent) parent = Parent{getppid(), beginningOf(getppid())};
  if (parent->beginning.empty()) return;
  try {
    std::thread([parent = std::move(*parent), handler = std::move(handler)] {
      while (beginningOf(parent.id) == parent.beginning) {
        std::this_thread::sleep_for(kPause);
      }
      handler();
    }).detach();
  } catch (const std::system_error&) {
    // No thread to be had: the program needs its own ones more.
  }
}

}  // namespace genostat::platform
