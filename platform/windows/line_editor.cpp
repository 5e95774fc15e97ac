// Lines without editing. A thread reads them, since Windows cannot wait for a console or a pipe together with
// anything else.
#include "platform/line_editor.h"

#include <windows.h>

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>

#include "platform/path_text.h"

namespace genostat::platform {

namespace {

using namespace std::chrono_literals;

// What the reading thread shares with the program; it may outlive the editor.
struct LineQueue {
  std::mutex mutex;  // guards all below
  std::condition_variable changed;
  std::deque<std::string> lines;
  bool ended = false;
};

constexpr std::size_t kMostLinesAhead = 1000;

bool isConsole(HANDLE input) {
  DWORD mode = 0;
  return GetConsoleMode(input, &mode) != 0;
}

// Empty at the end.
std::string readBytes(HANDLE input, bool console) {
  DWORD count = 0;
  if (console) {
    wchar_t wide[4096];
    if (ReadConsoleW(input, wide, 4096, &count, nullptr) == 0) return {};
    // Ctrl-Z at the beginning of a line ends the input; an interrupt gives no characters.
    if (count > 0 && wide[0] == L'\x1A') return {};
    if (count == 0) return "\n";
    return pathToUtf8(std::filesystem::path(std::wstring(wide, count)));
  }
  char bytes[65536];
  if (ReadFile(input, bytes, sizeof(bytes), &count, nullptr) == 0) return {};
  return {bytes, count};
}

void readLines(const std::shared_ptr<LineQueue>& queue) {
  const HANDLE input = GetStdHandle(STD_INPUT_HANDLE);
  const bool console = isConsole(input);
  std::string rest;
  const auto put = [&](std::string line) {
    if (line.ends_with('\r')) line.pop_back();
    std::unique_lock lock(queue->mutex);
    queue->changed.wait(lock, [&] { return queue->lines.size() < kMostLinesAhead; });
    queue->lines.push_back(std::move(line));
    queue->changed.notify_all();
  };
  while (true) {
    const std::string bytes = readBytes(input, console);
    if (bytes.empty()) break;
    std::size_t begin = 0;
    for (std::size_t end = bytes.find('\n'); end != std::string::npos; end = bytes.find('\n', begin)) {
      put(rest + bytes.substr(begin, end - begin));
      rest.clear();
      begin = end + 1;
    }
    rest += bytes.substr(begin);
  }
  if (!rest.empty()) put(rest);
  const std::lock_guard lock(queue->mutex);
  queue->ended = true;
  queue->changed.notify_all();
}

class ThreadedLines : public LineEditor {
 public:
  explicit ThreadedLines(Options options)
      : options_(std::move(options)), interactive_(isConsole(GetStdHandle(STD_INPUT_HANDLE))) {}

  Input read(const std::string& prompt) override {
    if (interactive_) {
      std::fputs(prompt.c_str(), stderr);
      std::fflush(stderr);
    }
    if (!started_) std::thread(readLines, queue_).detach();
    started_ = true;
    while (true) {
      std::unique_lock lock(queue_->mutex);
      queue_->changed.wait_for(lock, 50ms,
                               [&] { return interrupted_ || !queue_->lines.empty() || queue_->ended; });
      if (std::exchange(interrupted_, false)) return {Input::Kind::Interrupted, {}};
      if (!queue_->lines.empty()) {
        Input input{Input::Kind::Line, std::move(queue_->lines.front())};
        queue_->lines.pop_front();
        queue_->changed.notify_all();
        return input;
      }
      if (queue_->ended) return {Input::Kind::End, {}};
      lock.unlock();
      // Whether something is typed cannot be known; a person sees what comes, and goes on.
      if (options_.idle && options_.idle(true)) return {Input::Kind::Woken, {}};
    }
  }

  bool isInteractive() const override { return interactive_; }

  bool hasEnded() const override {
    const std::lock_guard lock(queue_->mutex);
    return queue_->ended && queue_->lines.empty();
  }

  void interrupt() override {
    const std::lock_guard lock(queue_->mutex);
    interrupted_ = true;
    queue_->changed.notify_all();
  }

 private:
  const Options options_;
  const bool interactive_;
  const std::shared_ptr<LineQueue> queue_ = std::make_shared<LineQueue>();
  bool started_ = false;
  bool interrupted_ = false;  // guarded by the queue's mutex
};

}  // namespace

std::unique_ptr<LineEditor> LineEditor::create(Options options) {
  return std::make_unique<ThreadedLines>(std::move(options));
}

}  // namespace genostat::platform
