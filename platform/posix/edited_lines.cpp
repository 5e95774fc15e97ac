#include "platform/posix/edited_lines.h"

#include <histedit.h>
#include <langinfo.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <cwchar>
#include <exception>
#include <mutex>
#include <string_view>
#include <thread>
#include <utility>

#include "platform/posix/drawn_line.h"
#include "platform/posix/line_history.h"

namespace genostat::platform {

namespace {

constexpr int kIdleMilliseconds = 50;
constexpr wchar_t kInterruptKey = 3;  // Ctrl-C

struct EndEditor {
  void operator()(EditLine* editor) const { el_end(editor); }
};
struct EndHistory {
  void operator()(History* history) const { history_end(history); }
};

// The library converts texts by the locale, and ours are UTF-8.
void useUtf8() {
  const char* chosen = std::setlocale(LC_CTYPE, "");
  if (chosen == nullptr || std::string_view(nl_langinfo(CODESET)) != "UTF-8") {
    std::setlocale(LC_CTYPE, "C.UTF-8");
  }
}

// A program that sets up a terminal from the background is stopped.
bool ownsTerminal() {
  const pid_t foreground = tcgetpgrp(STDIN_FILENO);
  return foreground == -1 || foreground == getpgrp();
}

bool inputWaits(int milliseconds) {
  pollfd input = {STDIN_FILENO, POLLIN, 0};
  return poll(&input, 1, milliseconds) > 0;
}

std::size_t characterCount(std::string_view utf8) {
  return static_cast<std::size_t>(
      std::ranges::count_if(utf8, [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

// What all begin with; never a part of a character.
std::string commonBeginning(const std::vector<std::string>& candidates) {
  std::string common = candidates.front();
  for (const std::string& candidate : candidates) {
    const auto differs = std::mismatch(common.begin(), common.end(), candidate.begin(), candidate.end());
    common.erase(differs.first, common.end());
  }
  while (!common.empty() && candidates.front().size() > common.size() &&
         (static_cast<unsigned char>(candidates.front()[common.size()]) & 0xC0) == 0x80) {
    common.pop_back();
  }
  return common;
}

class EditedLines : public LineEditor {
 public:
  explicit EditedLines(Options options) : options_(std::move(options)), keeper_(options_.historyFile) {
    canRestore_ = tcgetattr(STDIN_FILENO, &found_) == 0;
    useUtf8();
    editor_.reset(el_init("genostat", stdin, stdout, stderr));
    if (!editor_) return;
    EditLine* editor = editor_.get();
    el_set(editor, EL_CLIENTDATA, this);
    el_set(editor, EL_PROMPT, &EditedLines::promptOf);
    el_set(editor, EL_EDITOR, "emacs");
    el_set(editor, EL_SIGNAL, 0);
    el_set(editor, EL_GETCFN, &EditedLines::readCharacter);
    el_set(editor, EL_ADDFN, "complete-command", "Complete the word before the cursor",
           &EditedLines::completeKey);
    el_set(editor, EL_ADDFN, "suspend-program", "Stop the program until it is continued",
           &EditedLines::suspendKey);
    bind("^I", "complete-command");
    bind("^R", "em-inc-search-prev");
    // Keys of today's terminals that the library does not know by itself.
    bind("\\e[1;5C", "em-next-word");
    bind("\\e[1;5D", "ed-prev-word");
    bind("\\e[3~", "ed-delete-next-char");
    bind("\\e[1~", "ed-move-to-beg");
    bind("\\e[4~", "ed-move-to-end");
    loadHistory();
    el_source(editor, nullptr);
    bind("^Z", "suspend-program");
  }

  ~EditedLines() override { putBack(); }

  bool works() const { return editor_ != nullptr; }

  Input read(const std::string& prompt) override {
    prompt_ = prompt;
    outcome_ = Input::Kind::End;
    drawn_.begin(editor_.get(), static_cast<int>(characterCount(prompt_)));
    reading_ = true;
    // The library would do so after the prompt, and what is typed in between would be seen twice.
    takeTerminal();
    int count = 0;
    const char* text = el_gets(editor_.get(), &count);
    reading_ = false;
    if (failure_) {
      std::fputc('\n', stdout);
      std::fflush(stdout);
      std::rethrow_exception(std::exchange(failure_, nullptr));
    }
    if (text == nullptr || count <= 0) {
      if (outcome_ == Input::Kind::End) std::fputc('\n', stdout);
      std::fflush(stdout);
      return {outcome_, {}};
    }
    std::string line(text, static_cast<std::size_t>(count));
    if (line.ends_with('\n')) line.pop_back();
    return {Input::Kind::Line, std::move(line)};
  }

  bool isInteractive() const override { return true; }
  bool hasEnded() const override { return ended_; }
  void interrupt() override { interrupted_ = true; }

  void hideLine() override {
    if (!reading_ || !idling_ || hidden_) return;
    hidden_ = true;
    drawn_.erase();
  }

  bool remember(const std::string& entry) override {
    if (entry == std::exchange(latest_, entry)) return true;
    HistEvent event = {};
    history(history_.get(), &event, H_ENTER, entry.c_str());
    if (failed_ || keeper_.append(entry)) return true;
    failed_ = true;
    return false;
  }

  void restoreTerminal() override {
    // Nobody takes it again. A thread that is taking it may be held up by a terminal that takes nothing.
    constexpr std::chrono::milliseconds kPatience{200};
    if (!restored_.exchange(true)) (void)modes_.try_lock_for(kPatience);
    putBack();
  }

 private:
  void takeTerminal() {
    const std::scoped_lock lock(modes_);
    el_set(editor_.get(), EL_PREP_TERM, 1);
    freeSignalKeys();
  }

  void putBack() const {
    if (canRestore_ && ownsTerminal()) tcsetattr(STDIN_FILENO, TCSANOW, &found_);
  }

  static EditedLines& self(EditLine* editor) {
    void* data = nullptr;
    el_get(editor, EL_CLIENTDATA, &data);
    return *static_cast<EditedLines*>(data);
  }
  static char* promptOf(EditLine* editor) { return self(editor).prompt_.data(); }
  static int readCharacter(EditLine* editor, wchar_t* character) { return self(editor).next(*character); }
  static unsigned char completeKey(EditLine* editor, int) {
    EditedLines& lines = self(editor);
    try {
      return lines.complete();
    } catch (...) {
      lines.failure_ = std::current_exception();
      return CC_EOF;
    }
  }
  static unsigned char suspendKey(EditLine* editor, int) { return self(editor).suspend(); }

  void bind(const char* key, const char* command) {
    el_set(editor_.get(), EL_BIND, key, command, static_cast<char*>(nullptr));
  }

  void loadHistory() {
    history_.reset(history_init());
    HistEvent event = {};
    history(history_.get(), &event, H_SETSIZE, static_cast<int>(LineHistory::kMostEntries));
    history(history_.get(), &event, H_SETUNIQUE, 1);
    for (const std::string& entry : keeper_.load()) {
      history(history_.get(), &event, H_ENTER, entry.c_str());
    }
    el_set(editor_.get(), EL_HIST, history, history_.get());
  }

  // One character, or 0 to end the line.
  int next(wchar_t& character) {
    while (true) {
      if (interrupted_.exchange(false)) return leave(Input::Kind::Interrupted);
      drawn_.followTerminal();
      if (inputWaits(kIdleMilliseconds)) {
        if (!decode(character)) {
          ended_ = true;
          return leave(Input::Kind::End);
        }
        return character == kInterruptKey ? leave(Input::Kind::Interrupted) : 1;
      }
      if (idle()) return leave(Input::Kind::Woken);
    }
  }

  // Ctrl-Z comes as a key, so that the line can be put away first, and Ctrl-C too, so that it keeps its place
  // among the keys around it; Ctrl-\ would leave the terminal as it is now. The library itself would set them
  // back.
  static void freeSignalKeys() {
    termios mode = {};
    if (tcgetattr(STDIN_FILENO, &mode) != 0) return;
    for (const int key : {VINTR, VQUIT, VSUSP}) {
      mode.c_cc[key] = _POSIX_VDISABLE;
    }
    tcsetattr(STDIN_FILENO, TCSADRAIN, &mode);
  }

  // False at the end of the input.
  bool decode(wchar_t& character) {
    std::mbstate_t state = {};
    while (true) {
      char byte = 0;
      const ssize_t size = ::read(STDIN_FILENO, &byte, 1);
      if (size < 0 && (errno == EINTR || errno == EAGAIN)) continue;
      if (size <= 0) return false;
      const std::size_t used = std::mbrtowc(&character, &byte, 1, &state);
      if (used == static_cast<std::size_t>(-2)) continue;
      if (used == static_cast<std::size_t>(-1)) {
        state = {};
        continue;
      }
      return true;
    }
  }

  bool idle() {
    if (!options_.idle) return false;
    const LineInfoW* line = el_wline(editor_.get());
    hidden_ = false;
    idling_ = true;
    bool wake = true;
    try {
      wake = options_.idle(line->lastchar == line->buffer);
    } catch (...) {
      failure_ = std::current_exception();
    }
    if (wake) hideLine();
    idling_ = false;
    if (hidden_ && !wake) drawn_.redraw();
    return wake;
  }

  int leave(Input::Kind kind) {
    outcome_ = kind;
    if (kind == Input::Kind::Interrupted) drawn_.goBelow("^C\n");
    return 0;
  }

  unsigned char complete() {
    // A tab that was not typed but pasted.
    if (inputWaits(0)) {
      el_insertstr(editor_.get(), " ");
      return CC_REFRESH;
    }
    if (!options_.complete) return CC_NORM;
    const LineInfo* line = el_line(editor_.get());
    const std::string text(line->buffer, static_cast<std::size_t>(line->lastchar - line->buffer));
    const auto cursor = static_cast<std::size_t>(line->cursor - line->buffer);
    const Completion completion = options_.complete(text, cursor);
    if (completion.candidates.empty()) return CC_NORM;
    const std::string typed = text.substr(completion.begin, cursor - completion.begin);
    std::string replacement = commonBeginning(completion.candidates);
    // A quote or a blank that is there already is not wanted twice.
    const bool ended = std::string_view(text).substr(cursor).starts_with(completion.ending);
    if (completion.candidates.size() == 1 && !ended) replacement += completion.ending;
    if (replacement.size() >= typed.size() && replacement != typed) {
      el_deletestr(editor_.get(), static_cast<int>(characterCount(typed)));
      el_insertstr(editor_.get(), replacement.c_str());
      return CC_REFRESH;
    }
    if (completion.candidates.size() > 1 && options_.list) showCandidates(completion.candidates);
    return CC_NORM;
  }

  void showCandidates(const std::vector<std::string>& candidates) {
    drawn_.goBelow("\n");
    std::fputs(options_.list(candidates, drawn_.columns()).c_str(), stdout);
    std::fflush(stdout);
    drawn_.redraw();
  }

  unsigned char suspend() {
    drawn_.erase();
    el_set(editor_.get(), EL_PREP_TERM, 0);
    kill(0, SIGTSTP);
    // Another thread may be the one that takes the signal: this one must not draw before all are stopped.
    do {
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
    } while (!ownsTerminal());
    takeTerminal();
    drawn_.redraw();
    return CC_NORM;
  }

  std::timed_mutex modes_;  // held while the terminal's modes change; for ever once it was restored
  std::atomic<bool> restored_{false};
  const Options options_;
  const LineHistory keeper_;
  termios found_ = {};
  bool canRestore_ = false;
  std::unique_ptr<History, EndHistory> history_;
  std::unique_ptr<EditLine, EndEditor> editor_;  // goes before the history
  std::string prompt_;
  std::string latest_;  // entry of the history
  DrawnLine drawn_;
  Input::Kind outcome_ = Input::Kind::End;
  bool reading_ = false;
  bool idling_ = false;
  bool hidden_ = false;
  bool failed_ = false;  // the history's file cannot be written
  bool ended_ = false;   // the terminal has gone
  // Thrown by what the library's code has called: that must get back first, and set the terminal back.
  std::exception_ptr failure_;
  std::atomic<bool> interrupted_{false};
};

}  // namespace

std::unique_ptr<LineEditor> makeEditedLines(LineEditor::Options options) {
  auto lines = std::make_unique<EditedLines>(std::move(options));
  if (!lines->works()) return nullptr;
  return lines;
}

}  // namespace genostat::platform
