#include <cstdio>
#include <exception>
#include <variant>

#include "platform/program.h"
#include "standalone/console/batch_run.h"
#include "standalone/console/exit_status.h"
#include "standalone/console/language_choice.h"
#include "standalone/console/options.h"
#include "standalone/console/qc_run.h"
#include "standalone/console/shell_run.h"
#include "standalone/language/translation.h"

namespace console = genostat::console;
namespace platform = genostat::platform;

int main(int argc, char** argv) {
  platform::prepareStandardStreams();
  try {
    const std::vector<std::string> arguments = platform::commandLineArguments(argc, argv);
    console::chooseLanguage(arguments);
    const auto parsed = console::parseArguments(arguments);
    if (const auto* run = std::get_if<console::RunOptions>(&parsed)) return console::runBatch(*run);
    if (const auto* qc = std::get_if<console::QcOptions>(&parsed)) return console::runQc(*qc);
    if (const auto* shell = std::get_if<console::ShellOptions>(&parsed)) return console::runShell(*shell);
    const auto& answer = std::get<console::Answer>(parsed);
    std::FILE* stream = answer.status == console::kSuccess ? stdout : stderr;
    const bool written = std::fputs(answer.text.c_str(), stream) >= 0 && std::fflush(stream) == 0;
    return written ? answer.status : console::kFailure;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", genostat::standalone::translated("error: {1}", {error.what()}).c_str());
    return console::kFailure;
  }
}
