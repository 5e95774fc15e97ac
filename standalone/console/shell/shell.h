// The interactive client: reads commands line by line while jobs run.
//
// One thread reads, runs commands and shows results. While it waits for a line, it looks after the jobs some
// twenty times a second: their notices come at once, their results when nothing is being typed.
#pragma once

#include <atomic>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/interrupts.h"
#include "platform/line_editor.h"
#include "standalone/console/options.h"
#include "standalone/console/shell/input.h"
#include "standalone/console/shell/view.h"
#include "standalone/console/shell/word.h"
#include "standalone/session/session.h"

namespace genostat::standalone {

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
  using Arguments = std::vector<ShellArgument>;

  bool idle(bool lineIsEmpty);
  platform::Completion complete(std::string_view line, std::size_t cursor);
  void tellOfHeldResults();
  void runEndedJobs();
  void runEndedJob();
  // True when the shell is to end.
  bool takeInput(const platform::LineEditor::Input& input);
  bool takeLine(std::string_view line);
  bool takeFirstLine(std::string_view line);
  void runInput();
  void runSyntax(const std::string& text, std::size_t firstLine);
  void remember(std::string_view entry);

  // True when the shell is to end.
  bool runWord(const FirstWord& word, std::string_view line);
  void showJobs();
  void cancel(const Arguments& arguments);
  void waitForJobs();
  void showDatasets();
  void showCases(const Arguments& arguments);
  void writeOutput(const Arguments& arguments);
  void runFile(const Arguments& arguments);
  void help(const Arguments& arguments);
  bool quit();
  bool askToQuit();

  void rejectArguments(const Arguments& arguments, std::size_t most) const;
  // Throws CommandError at a part of the line.
  [[noreturn]] void fail(std::string message, const ShellArgument& at, std::string hint = {}) const;
  [[noreturn]] void failUnknown(const ShellArgument& at, const std::vector<std::string>& known,
                                std::string message) const;
  [[noreturn]] void failUnknownData(const ShellArgument& name);

  // While it lives, Ctrl-C stops what runs instead of dropping what is typed.
  class Working;

  const ShellOptions options_;
  ShellView view_;
  std::unique_ptr<platform::LineEditor> editor_;
  std::optional<Session> session_;
  ShellInput input_;
  std::string line_;  // of the shell word that runs
  std::size_t lineNumber_ = 0;
  std::size_t heldResultsTold_ = 0;
  bool failed_ = false;  // a shell word
  bool asking_ = false;  // a question is on the screen, not a command's line

  enum class Phase { Starting, Running, Interrupted };
  std::atomic<Phase> phase_{Phase::Starting};
  std::atomic<bool> ending_{false};   // the first interrupt that ends the program has come
  std::atomic<bool> working_{false};  // something runs that Ctrl-C stops
  std::atomic<bool> stopped_{false};  // and it has
};

}  // namespace genostat::standalone
