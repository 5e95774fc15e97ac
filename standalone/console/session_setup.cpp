#include "standalone/console/session_setup.h"

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

#include "platform/path_text.h"
#include "platform/running_program.h"
#include "platform/terminal.h"
#include "standalone/console/view/output_file.h"
#include "standalone/language/translation.h"

namespace genostat::standalone {

namespace {

using std::filesystem::path;

path absolutePath(const std::string& utf8) {
  if (utf8.empty()) return {};
  const path given = platform::pathFromUtf8(utf8);
  std::error_code error;
  path absolute = std::filesystem::absolute(given, error);
  return error ? given : absolute.lexically_normal();
}

// The system's choice even when there is no such folder, so that an error can name it.
path systemTemporaryFolder() {
  std::error_code missing;
  path folder = std::filesystem::temp_directory_path(missing);
  if (!missing) return folder;
  for (const char* name : {"TMPDIR", "TMP", "TEMP"}) {
    if (const char* value = std::getenv(name)) return platform::pathFromNarrow(value);
  }
  return "/tmp";
}

}  // namespace

SessionOptions sessionOptions(const RunOptions& options) {
  SessionOptions session;
  session.moduleFolder = platform::programFolder();
  session.folders.temporary = absolutePath(options.temporaryFolder);
  if (session.folders.temporary.empty()) {
    // Everybody's folder.
    session.folders.temporary = systemTemporaryFolder();
    session.privateTemporaryFolder = true;
  }
  session.folders.installation = absolutePath(options.homeFolder);
  if (session.folders.installation.empty()) session.folders.installation = session.moduleFolder;
  session.folders.strings = absolutePath(options.stringsFolder);
  std::error_code ignored;
  if (!options.stringsFolder.empty() && !std::filesystem::is_directory(session.folders.strings, ignored)) {
    throw UsageError(
        translated("the folder of string tables {1} does not exist", {quotedName(options.stringsFolder)}));
  }
  session.client.interactive = !options.commandLineMode;
  session.client.eventsFile = absolutePath(options.eventsFile);
  session.client.csvFolder = absolutePath(options.csvFolder);
  return session;
}

void prepareOutputs(const RunOptions& options, ConsoleView& view, const std::string& title) {
  std::optional<common::OutputFile> results;
  std::optional<common::OutputFile> report;
  if (!options.outputFile.empty()) results = prepareOutputFile(options.outputFile);
  if (!options.htmlFile.empty()) report = prepareOutputFile(options.htmlFile);
  if (!options.file.empty()) {
    const path syntax = platform::pathFromUtf8(options.file);
    if (results && results->isSameAs(syntax))
      throw UsageError(translated("{1} names the syntax file", {"--to"}));
    if (report && report->isSameAs(syntax))
      throw UsageError(translated("{1} names the syntax file", {"--html"}));
  }
  if (results && report && results->isSameAs(platform::pathFromUtf8(options.htmlFile))) {
    throw UsageError(translated("--to and --html name the same file"));
  }
  const bool pageOnTerminal =
      options.output == OutputFormat::Html && !results && platform::standardOutputTerminal().isTerminal;
  if (pageOnTerminal) throw UsageError(translated("--output html does not suit a terminal; add --to FILE"));
  view.setFiles(std::move(results), std::move(report), title);
}

}  // namespace genostat::standalone
