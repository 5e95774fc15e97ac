#include "platform/line_editor.h"

#include <poll.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <utility>

#include "platform/posix/edited_lines.h"

namespace genostat::platform {

namespace {

constexpr int kPlainIdleMilliseconds = 50;

// Lines as they come: from a pipe, a file, or a terminal that can do no more.
class PlainLines : public LineEditor {
 public:
  explicit PlainLines(Options options)
      : options_(std::move(options)), interactive_(isatty(STDIN_FILENO) == 1) {}

  Input read(const std::string& prompt) override {
    if (interactive_) {
      std::fputs(prompt.c_str(), stderr);
      std::fflush(stderr);
    }
    while (true) {
      if (const auto end = buffer_.find('\n', searched_); end != std::string::npos) return takeLine(end, 1);
      searched_ = buffer_.size();
      if (ended_) {
        leavePrompt();
        return buffer_.empty() ? Input{Input::Kind::End, {}} : takeLine(buffer_.size(), 0);
      }
      if (interrupted_.exchange(false)) {
        leavePrompt();
        buffer_.clear();
        searched_ = 0;
        return {Input::Kind::Interrupted, {}};
      }
      if (waitForInput()) {
        readMore();
      } else if (options_.idle && options_.idle(buffer_.empty())) {
        return {Input::Kind::Woken, {}};
      }
    }
  }

  bool isInteractive() const override { return interactive_; }
  bool hasEnded() const override { return ended_ && buffer_.empty(); }
  void interrupt() override { interrupted_ = true; }

 private:
  // No line feed of the user's has ended its row.
  void leavePrompt() const {
    if (interactive_) std::fputc('\n', stderr);
  }

  Input takeLine(std::size_t end, std::size_t lineFeed) {
    Input input{Input::Kind::Line, buffer_.substr(0, end)};
    buffer_.erase(0, end + lineFeed);
    searched_ = 0;
    if (input.text.ends_with('\r')) input.text.pop_back();
    return input;
  }

  static bool waitForInput() {
    pollfd input = {STDIN_FILENO, POLLIN, 0};
    return poll(&input, 1, kPlainIdleMilliseconds) != 0;
  }

  void readMore() {
    char bytes[65536];
    const ssize_t size = ::read(STDIN_FILENO, bytes, sizeof(bytes));
    if (size > 0) buffer_.append(bytes, static_cast<std::size_t>(size));
    ended_ = size == 0 || (size < 0 && errno != EINTR && errno != EAGAIN);
  }

  const Options options_;
  const bool interactive_;
  std::string buffer_;
  std::size_t searched_ = 0;  // no line feed up to here
  bool ended_ = false;
  std::atomic<bool> interrupted_{false};
};

bool canEdit() {
  const char* terminal = std::getenv("TERM");
  return isatty(STDIN_FILENO) == 1 && isatty(fileno(stdout)) == 1 && terminal != nullptr &&
         *terminal != '\0' && std::string_view(terminal) != "dumb";
}

}  // namespace

std::unique_ptr<LineEditor> LineEditor::create(Options options) {
  if (canEdit()) {
    if (auto edited = makeEditedLines(options)) return edited;
  }
  return std::make_unique<PlainLines>(std::move(options));
}

}  // namespace genostat::platform
