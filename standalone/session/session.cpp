#include "standalone/session/session.h"

#include <algorithm>
#include <exception>
#include <memory>
#include <new>
#include <utility>

#include "standalone/language/translation.h"
#include "standalone/services/installed_language.h"
#include "standalone/services/job_metadata.h"
#include "standalone/services/string_table_file.h"
#include "standalone/session/requirements.h"

namespace genostat::standalone {

namespace {

constexpr std::string_view kModuleCommand = "GENOSTAT";

std::unique_ptr<EventLog> openEvents(const std::filesystem::path& file) {
  return file.empty() ? nullptr : std::make_unique<EventLog>(file);
}

// What procedures/ implements, and the command that goes to the module.
std::vector<CommandHandler> allCommands() {
  const auto procedures = procedureCommands();
  std::vector<CommandHandler> handlers(procedures.begin(), procedures.end());
  handlers.push_back({kModuleCommand, nullptr});
  return handlers;
}

// A module reads the folders as soon as it is loaded.
SessionOptions publishFolders(SessionOptions options, const PrivateFolder& privateFolder) {
  if (!privateFolder.path().empty()) options.folders.temporary = privateFolder.path();
  options.folders.shippedStrings = options.moduleFolder / "strings";
  setHostFolders(options.folders);
  return options;
}

}  // namespace

Session::Session(SessionOptions options, SessionView& view, OutputDocument& output)
    : privateFolder_(options.privateTemporaryFolder ? options.folders.temporary : std::filesystem::path()),
      options_(publishFolders(std::move(options), privateFolder_)),
      view_(view),
      adapter_(options_.interactive, openEvents(options_.eventsFile)),
      module_(options_.moduleFolder),
      dispatcher_(allCommands()),
      output_(output),
      scope_({&datasets_, &output_, [this](const Diagnostic& diagnostic) { reporter_(diagnostic); }}),
      reporter_([this](const Diagnostic& diagnostic) { report(diagnostic); }) {
  showStringTableWarnings();
}

void Session::showStringTableWarnings() {
  const HostFolders& folders = options_.folders;
  const auto folder = folders.strings.empty() ? folders.installation / "strings" : folders.strings;
  for (const auto& tables : stringTableFolders(folder)) {
    for (const auto& file : {procedureTableFile(tables, std::string(kModuleCommand)), globalTableFile(tables),
                             clientTableFile(tables)}) {
      for (const Diagnostic& warning : readStringTable(file).warnings) {
        report(warning);
      }
    }
  }
}

void Session::run(const SourcePtr& text) {
  ++workbook_;
  paragraph_ = 0;
  stopped_ = false;
  runCommands(text, true);
}

void Session::runCommands(const SourcePtr& text, bool stoppable) {
  CommandScanner scanner(text);
  while (const auto item = scanner.next()) {
    if (stoppable && stopped_) break;
    showMessages();
    runItem(*item);
  }
  showMessages();
}

void Session::runItem(const ScanResult::Item& item) {
  asCommand([&] {
    setJobMetadata(workbook_, ++paragraph_);
    if (item.error) {
      output_.beginCommand(item.error->range ? item.error->range->source->name : std::string());
      report(*item.error);
    } else {
      execute(item.command);
    }
  });
}

void Session::execute(const Command& command) {
  const CommandScope scope(command);
  output_.beginCommand(command.tokens.front().range.source->name);
  try {
    const CommandHandler& handler = dispatcher_.find(command);
    if (handler.name == kModuleCommand) return runModule(command);
    CommandContext context{command, datasets_, output_, settings_,
                           [this](const Diagnostic& warning) { report(warning); }};
    handler.run(context);
  } catch (const CommandError& error) {
    Diagnostic diagnostic = error.diagnostic();
    if (!diagnostic.range) diagnostic.range = command.tokens.front().range;
    report(diagnostic);
  } catch (const std::bad_alloc&) {
    report({{}, translated("there is not enough memory for this command"), command.tokens.front().range, {}});
  } catch (const std::exception& error) {
    report({{}, translated("the command failed: {1}", {error.what()}), command.tokens.front().range, {}});
  }
}

void Session::runModule(const Command& command) {
  if (options_.interactive && submitsJob(command)) {
    const std::string missing = missingRequirement(options_.folders);
    if (!missing.empty()) {
      // What is wrong with the command itself is said first.
      const std::vector<Diagnostic> errors = syntaxErrors(command);
      for (const Diagnostic& error : errors) {
        report(error);
      }
      if (errors.empty()) report({{}, missing, command.tokens.front().range, {}});
      return;
    }
  }
  module_.runCommand();
}

// Has the module read a command without running it: in command-line mode it refuses every
// command that it can read. Errors of the syntax stand behind the command's name, all others at it.
std::vector<Diagnostic> Session::syntaxErrors(const Command& command) {
  std::vector<Diagnostic> errors;
  const auto shown = std::exchange(reporter_, [&](const Diagnostic& diagnostic) {
    if (diagnostic.range && diagnostic.range->begin > command.tokens.front().range.begin) {
      errors.push_back(diagnostic);
    }
  });
  adapter_.setInteractive(false);
  module_.runCommand();
  adapter_.setInteractive(true);
  reporter_ = shown;
  return errors;
}

void Session::report(const Diagnostic& diagnostic) {
  if (diagnostic.severity == Diagnostic::Severity::Error) failed_ = true;
  view_.showDiagnostic(diagnostic);
}

void Session::reportError(const std::string& message) {
  report({{}, message, {}, {}});
}

bool Session::close() {
  showMessages();
  if (!gate_.close()) waitForProgramEnd();
  privateFolder_.remove();
  return !failed_;
}

}  // namespace genostat::standalone
