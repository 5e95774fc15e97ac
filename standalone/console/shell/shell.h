// The interactive client: reads commands line by line while jobs run.
//
// One thread reads, runs commands and shows results. While it waits for a line, it looks after the jobs some
// twenty times a second: their notices come at once, their results when nothing is being typed.
#pragma once

#include <atomic>
#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>

#include "platform/interrupts.h"
#include "platform/line_editor.h"
#include "standalone/console/options.h"
#include "standalone/console/shell/input.h"
#include "standalone/console/shell/view.h"
#include "standalone/console/shell/work.h"
#include "standalone/console/start_phase.h"

namespace genostat::standalone {

// genostat shell: the program's exit status. Once per program, before any thread is started.
int runShell(const ShellOptions& options);

class Shell {
 public:
  // To be made before other threads start.
  explicit Shell(const ShellOptions& options);

  // Makes ready. Throws UsageError or std::runtime_error.
  void begin();
  // Runs until the end; the program's exit status.
  int run();

  // Any thread, at any time.
  void interrupt(platform::Interrupt kind);

  ShellView& view() { return view_; }

 private:
  bool idle(bool lineIsEmpty);
  platform::Completion complete(std::string_view line, std::size_t cursor);
  // These are true when the shell is to end.
  bool takeInput(const platform::LineEditor::Input& input);
  bool takeLine(std::string_view line);
  bool takeFirstLine(std::string_view line);
  bool quit();
  bool askToQuit();
  void runInput();
  void remember(std::string_view entry);

  const ShellOptions options_;
  ShellView view_;
  std::unique_ptr<platform::LineEditor> editor_;
  std::optional<ShellWork> work_;  // from begin() on
  ShellInput input_;
  std::size_t lineNumber_ = 0;
  bool failed_ = false;  // a shell word
  bool asking_ = false;  // a question is on the screen, not a command's line

  StartPhase start_;
  std::atomic<bool> inputEnded_{false};  // on a terminal: nobody can answer any more
  std::atomic<bool> ending_{false};      // the first interrupt that ends the program has come
};

}  // namespace genostat::standalone
