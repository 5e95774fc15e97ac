#include "standalone/console/qc/run.h"

#include <array>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

#include "common/files/part_file.h"
#include "common/text/printable_text.h"
#include "platform/environment.h"
#include "platform/path_text.h"
#include "platform/terminal.h"
#include "standalone/console/batch_run.h"
#include "standalone/console/qc/request.h"
#include "standalone/console/qc/view.h"
#include "standalone/console/view/output_file.h"
#include "standalone/language/translation.h"
#include "standalone/session/exit_status.h"
#include "standalone/syntax/diagnostic.h"

namespace genostat::standalone {

namespace {

int refuseQcRun(const std::string& message, int status) {
  std::fprintf(stderr, "%s\n", common::printableText(message, common::LineBreaks::Keep).c_str());
  return status;
}

// No output may replace the reads or another output.
void checkOutputNames(const QcRequest& request, const QcOptions& options,
                      const std::optional<common::OutputFile>& csv) {
  const std::array<std::pair<const char*, const std::string*>, 4> outputs = {
      {{"--csv", &options.csvFile},
       {"--events", &options.session.eventsFile},
       {"--to", &options.session.outputFile},
       {"--html", &options.session.htmlFile}}};
  for (const auto& [option, name] : outputs) {
    if (name->empty()) continue;
    if (csv && name != &options.csvFile && csv->isSameAs(platform::pathFromUtf8(*name)))
      throw QcRequestError(
          translated("error: {1}", {translated("{1} and {2} name the same file", {"--csv", option})}));
    const std::filesystem::path output = platform::pathFromUtf8(*name);
    for (const std::string& file : request.files) {
      std::error_code different;
      if (std::filesystem::equivalent(output, platform::pathFromUtf8(file), different))
        throw QcRequestError(translated("error: {1}", {translated("{1} names a file of reads", {option})}));
    }
  }
}

// Analyses inherit it. Throws std::runtime_error when they could write nothing there.
void askForFastqcData(const std::string& folder) {
  if (folder.empty()) return;
  std::error_code error;
  const std::filesystem::path path = platform::pathFromUtf8(folder);
  const std::filesystem::path absolute = std::filesystem::absolute(path, error);
  try {
    common::tryFolder(path);
  } catch (const std::runtime_error& reason) {
    throw std::runtime_error(
        translated("cannot write into {1}: {2}", {quotedName(folder), translatedReason(reason.what())}));
  }
  platform::setEnvironmentPath("GENOSTAT_FASTQC_DATA", error ? path : absolute);
}

}  // namespace

int runQc(const QcOptions& options) {
  std::string command;
  std::unique_ptr<QcView> view;
  try {
    const QcRequest request = checkQcOptions(options);
    command = qcCommand(request, options);
    if (options.printSyntax) {
      if (platform::standardOutputTerminal().isTerminal)
        command = common::printableText(command, common::LineBreaks::Keep);
      const bool written = std::fputs(command.c_str(), stdout) >= 0 && std::fflush(stdout) == 0;
      return written ? kSuccess
                     : refuseQcRun(translated("error: {1}", {translated("cannot write to standard output")}),
                                   kFailure);
    }
    std::optional<common::OutputFile> csv;
    if (!options.csvFile.empty()) csv = prepareOutputFile(options.csvFile);
    checkOutputNames(request, options, csv);
    askForFastqcData(options.fastqcFolder);
    platform::setEnvironmentPath("GENOSTAT_KEEP_GOING", options.stopAtUnread ? "0" : "1");
    view = std::make_unique<QcView>(options, request, std::move(csv));
  } catch (const QcRequestError& error) {
    return refuseQcRun(error.what(), kUsageError);
  } catch (const std::runtime_error& error) {
    return refuseQcRun(translated("error: {1}", {error.what()}), kFailure);
  }
  const auto text = std::make_shared<const SourceText>(SourceText{"<qc>", std::move(command)});
  return runText(options.session, text, std::move(view),
                 options.name.empty() ? translated("Quality control") : options.name);
}

}  // namespace genostat::standalone
