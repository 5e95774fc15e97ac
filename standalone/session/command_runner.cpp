#include "standalone/session/command_runner.h"

#include <exception>
#include <memory>
#include <new>
#include <optional>
#include <utility>

#include "standalone/language/translation.h"
#include "standalone/services/current.h"
#include "standalone/services/host_folders.h"
#include "standalone/session/dispatcher.h"
#include "standalone/session/requirements.h"

namespace genostat::standalone {

namespace {

std::vector<CommandHandler> withModuleCommand(std::span<const CommandHandler> commands) {
  std::vector<CommandHandler> handlers(commands.begin(), commands.end());
  handlers.push_back({kModuleCommand, nullptr});
  return handlers;
}

// The last command of the text, with a token for the place after it; none where the text is broken before.
std::optional<Command> commandWithPlace(const std::string& text) {
  const auto source = std::make_shared<const SourceText>(SourceText{{}, text + std::string(kPlaceText)});
  CommandScanner scanner(source);
  std::optional<Command> command;
  while (auto item = scanner.next()) {
    command = item->error ? std::nullopt : std::optional<Command>(std::move(item->command));
  }
  if (!command || command->tokens.size() < 2) return std::nullopt;
  Token& place = command->tokens[command->tokens.size() - 2];
  if (place.text != kPlaceText) return std::nullopt;
  place.kind = Token::Kind::Word;
  return command;
}

// The variables alone.
Dataset withoutCases(const Dataset& dataset) {
  Dataset empty;
  for (const Column& column : dataset.columns) {
    empty.columns.push_back({column.name, column.type, column.decimals, {}, {}});
  }
  return empty;
}

}  // namespace

CommandRunner::CommandRunner(std::span<const CommandHandler> commands, RunModule runModule, bool interactive,
                             SessionView& view, OutputDocument& output)
    : handlers_(withModuleCommand(commands)),
      runModule_(std::move(runModule)),
      interactive_(interactive),
      view_(view),
      output_(output),
      reporter_([this](const Diagnostic& diagnostic) { report(diagnostic); }),
      scope_({&datasets_, &output_, [this](const Diagnostic& diagnostic) { reporter_(diagnostic); }}) {}

void CommandRunner::beginText() {
  ++workbook_;
  paragraph_ = 0;
}

void CommandRunner::run(const ScanResult::Item& item) {
  setJobMetadata(workbook_, ++paragraph_);
  if (item.error) {
    output_.beginCommand(item.error->range ? item.error->range->source->name : std::string());
    report(*item.error);
  } else {
    execute(item.command);
  }
}

void CommandRunner::execute(const Command& command) {
  const CommandScope scope(command);
  const SourceRange& name = command.tokens.front().range;
  output_.beginCommand(name.source->name);
  try {
    const CommandHandler& handler = findHandler(handlers_, command);
    if (handler.run == nullptr) return runModule(command);
    CommandContext context{command, datasets_, output_, settings_, reporter_};
    handler.run(context);
  } catch (const CommandError& error) {
    Diagnostic diagnostic = error.diagnostic();
    if (!diagnostic.range) diagnostic.range = name;
    report(diagnostic);
  } catch (const std::bad_alloc&) {
    report({{}, translated("there is not enough memory for this command"), name, {}});
  } catch (const std::exception& error) {
    report({{}, translated("the command failed: {1}", {error.what()}), name, {}});
  }
}

void CommandRunner::runModule(const Command& command) {
  if (interactive_ && submitsJob(command)) {
    const std::string missing = missingRequirement(hostFolders());
    if (!missing.empty()) {
      // What is wrong with the command itself is said first.
      std::vector<Diagnostic> errors = syntaxErrors(command);
      if (errors.empty()) errors.push_back({{}, missing, command.tokens.front().range, {}});
      for (const Diagnostic& error : errors) {
        report(error);
      }
      return;
    }
  }
  runModule_(interactive_);
}

// Has the module read a command without running it. Errors of the syntax point after the command's name, all
// others at it.
std::vector<Diagnostic> CommandRunner::syntaxErrors(const Command& command) {
  std::vector<Diagnostic> errors;
  const auto shown = std::exchange(reporter_, [&](const Diagnostic& diagnostic) {
    if (diagnostic.range && diagnostic.range->begin > command.tokens.front().range.begin) {
      errors.push_back(diagnostic);
    }
  });
  runModule_(false);
  reporter_ = shown;
  return errors;
}

void CommandRunner::report(const Diagnostic& diagnostic) {
  if (diagnostic.severity == Diagnostic::Severity::Error) failed_ = true;
  view_.showDiagnostic(diagnostic);
}

std::vector<std::string_view> CommandRunner::names() const {
  std::vector<std::string_view> names;
  for (const CommandHandler& handler : handlers_) {
    names.push_back(handler.name);
  }
  return names;
}

// The command is run for its parser, which fails at the place; what the command does before goes to copies.
Expectation CommandRunner::expectedAfter(const std::string& text) {
  Expectation expectation;
  const std::optional<Command> command = commandWithPlace(text);
  if (!command) return expectation;
  DatasetStore datasets;
  // Commands that need a dataset are completed without one.
  const Dataset* active = datasets_.active();
  datasets.add(active != nullptr ? withoutCases(*active) : Dataset());
  OutputDocument output;
  Settings settings = settings_;
  const ExpectationScope noting(expectation);
  const CommandScope running(*command);
  const auto shown = std::exchange(reporter_, [](const Diagnostic&) {});
  try {
    const CommandHandler& handler = findHandler(handlers_, *command);
    if (handler.run == nullptr) {
      runModule_(false);
    } else {
      CommandContext context{*command, datasets, output, settings, reporter_};
      handler.run(context);
    }
  } catch (const CommandError&) {
    // At the place, or at a fault before it.
  }
  reporter_ = shown;
  return expectation;
}

}  // namespace genostat::standalone
