#include "standalone/session/session.h"

#include <chrono>
#include <string>

#include "platform/running_program.h"
#include "standalone/services/installed_language.h"
#include "standalone/services/string_table_file.h"
#include "standalone/session/exit_status.h"
#include "standalone/session/private_folder.h"

namespace genostat::standalone {

namespace {

// How long an interrupted program waits for its last notices.
constexpr std::chrono::milliseconds kNoticePatience(300);

std::unique_ptr<PrivateFolder> makePrivateFolder(const SessionOptions& options) {
  if (!options.privateTemporaryFolder) return nullptr;
  removeAbandonedFolders(options.folders.temporary);
  return std::make_unique<PrivateFolder>(options.folders.temporary);
}

// A module reads the folders as soon as it is loaded. Its own folder, for where this stands in the
// initialisation.
const std::filesystem::path& publishFolders(SessionOptions& options, const PrivateFolder* privateFolder) {
  if (privateFolder != nullptr) options.folders.temporary = privateFolder->path();
  options.folders.shippedStrings = options.moduleFolder / "strings";
  setHostFolders(options.folders);
  return options.moduleFolder;
}

void showStringTableWarnings(CommandRunner& runner) {
  const HostFolders& folders = hostFolders();
  const auto folder = folders.strings.empty() ? folders.installation / "strings" : folders.strings;
  for (const auto& tables : stringTableFolders(folder)) {
    for (const std::string_view name : {kModuleCommand, kGlobalTable, kClientTable}) {
      for (const Diagnostic& warning : readStringTable(stringTableFile(tables, name)).warnings) {
        runner.report(warning);
      }
    }
  }
}

}  // namespace

Session::Session(SessionOptions options, std::span<const CommandHandler> commands, SessionView& view,
                 OutputDocument& output)
    : privateFolder_(makePrivateFolder(options)),
      module_(publishFolders(options, privateFolder_.get())),
      gate_([this] { waitForProgramEnd(); }),
      commands_(
          commands,
          [this, usual = options.client.interactive](bool interactive) {
            jobs_.adapter().setInteractive(interactive);
            module_.runCommand();
            jobs_.adapter().setInteractive(usual);
          },
          options.client.interactive, view, output),
      jobs_(options.client, module_, gate_, view,
            [this](const SourcePtr& text) { runCommands(text, false); }) {
  showStringTableWarnings(commands_);
}

Session::~Session() = default;

void Session::run(const SourcePtr& text) {
  commands_.beginText();
  stopped_ = false;
  runCommands(text, true);
}

// The syntax of an end message is run whole, or results would be lost.
void Session::runCommands(const SourcePtr& text, bool stoppable) {
  CommandScanner scanner(text);
  while (const auto item = scanner.next()) {
    if (stoppable && stopped_) break;
    jobs_.showMessages();
    gate_.pass([&] { commands_.run(*item); });
  }
  jobs_.showMessages();
}

bool Session::close() {
  jobs_.showMessages();
  if (!gate_.close()) waitForProgramEnd();
  privateFolder_.reset();
  return !commands_.failed() && !jobs_.failed();
}

void Session::waitForProgramEnd() {
  jobs_.showMessagesUntil(end_.get_token());
  platform::exitNow(kInterrupted);
}

void Session::interrupt() {
  const CommandGate::Answer answer = gate_.interrupt();
  if (answer == CommandGate::Answer::Repeated) platform::exitNow(kInterrupted);
  // The program is about to end, by itself or on the first interrupt's thread.
  if (answer != CommandGate::Answer::First) return;
  jobs_.cancelForGood();
  privateFolder_.reset();
  jobs_.waitUntilShown(kNoticePatience);
  end_.request_stop();
  platform::exitNow(kInterrupted);
}

}  // namespace genostat::standalone
