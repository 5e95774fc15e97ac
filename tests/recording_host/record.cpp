#include "tests/recording_host/record.h"

#include <mutex>
#include <sstream>
#include <utility>

namespace recording {

namespace {
std::mutex mutex;
}

State& state() {
  static State state;
  return state;
}

void write(const std::string& line) {
  std::function<void()> reaction;
  {
    const std::lock_guard lock(mutex);
    const bool command = std::this_thread::get_id() == state().commandThread;
    (command ? state().commandLines : state().workerLines).push_back(line);
    if (!state().trigger.empty() && line.starts_with(state().trigger)) reaction = state().reaction;
  }
  if (state().onEachLine) state().onEachLine(line);
  if (reaction) reaction();
}

void onLine(const std::string& start, std::function<void()> reaction) {
  const std::lock_guard lock(mutex);
  state().trigger = start;
  state().reaction = std::move(reaction);
}

std::vector<std::string> takeLines(std::vector<std::string> State::*lines) {
  const std::lock_guard lock(mutex);
  return std::exchange(state().*lines, {});
}

std::string numbered(const std::string& type) {
  return type + " " + std::to_string(++state().objects[type]);
}

std::string shown(const std::string& text) {
  std::string escaped;
  for (const char c : text) {
    escaped += c == '\n' ? std::string("\\n\n") : std::string(1, c);
  }
  return "\"" + escaped + "\"";
}

std::string shown(const char* text) {
  return text == nullptr ? "null" : shown(std::string(text));
}

std::string shown(bool value) {
  return value ? "true" : "false";
}

std::string shown(int value) {
  return std::to_string(value);
}

std::string shown(double value) {
  std::ostringstream text;
  text << value;
  return text.str();
}

}  // namespace recording
