// Runs commands: finds each one's handler, gives it what it works with, shows how it went.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/data/dataset.h"
#include "standalone/output/output_document.h"
#include "standalone/services/current.h"
#include "standalone/session/command_context.h"
#include "standalone/session/session_view.h"
#include "standalone/syntax/command.h"
#include "standalone/syntax/expectation.h"

namespace genostat::standalone {

inline constexpr std::string_view kModuleCommand = "GENOSTAT";

// Owns what commands work on: datasets and settings. One at a time, as the host libraries find these through
// it. Command thread only.
class CommandRunner {
 public:
  // Has the module run the current command. Without an interactive client the module refuses every command
  // that it has read without an error.
  using RunModule = std::function<void(bool interactive)>;

  // Runs `commands` and the module's. Borrows the view and the document.
  CommandRunner(std::span<const CommandHandler> commands, RunModule runModule, bool interactive,
                SessionView& view, OutputDocument& output);
  CommandRunner(const CommandRunner&) = delete;
  CommandRunner& operator=(const CommandRunner&) = delete;

  // The next commands belong to another text of the user: jobs know their text and their place in it by
  // number.
  void beginText();
  // A command that fails is shown.
  void run(const ScanResult::Item& item);

  // Shows a diagnostic; an error counts as a failure.
  void report(const Diagnostic& diagnostic);
  bool failed() const { return failed_; }

  DatasetStore& datasets() { return datasets_; }
  // The commands that there are, in upper case.
  std::vector<std::string_view> names() const;
  // What may follow a text whose last command has no end yet, as the command's parser says.
  Expectation expectedAfter(const std::string& text);

 private:
  void execute(const Command& command);
  void runModule(const Command& command);
  std::vector<Diagnostic> syntaxErrors(const Command& command);

  const std::vector<CommandHandler> handlers_;
  const RunModule runModule_;
  const bool interactive_;
  SessionView& view_;
  OutputDocument& output_;
  DatasetStore datasets_;
  Settings settings_;
  // Gets what the running command says.
  std::function<void(const Diagnostic&)> reporter_;
  const SessionScope scope_;
  int workbook_ = 0;
  int paragraph_ = 0;
  bool failed_ = false;
};

}  // namespace genostat::standalone
