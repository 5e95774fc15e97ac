#include <cstdio>
#include <exception>
#include <variant>

#include "common/text/printable_text.h"
#include "platform/lifeline.h"
#include "platform/running_program.h"
#include "platform/terminal.h"
#include "standalone/console/batch_run.h"
#include "standalone/console/language_choice.h"
#include "standalone/console/options.h"
#include "standalone/console/qc/run.h"
#include "standalone/console/shell/shell.h"
#include "standalone/language/translation.h"
#include "standalone/session/exit_status.h"

namespace standalone = genostat::standalone;
namespace platform = genostat::platform;

int main(int argc, char** argv) {
  platform::prepareStandardStreams();
  platform::keepStandardOutput();
  platform::nameAsParent();
  try {
    const std::vector<std::string> arguments = platform::commandLineArguments(argc, argv);
    standalone::chooseLanguage(arguments);
    const auto parsed = standalone::parseArguments(arguments);
    if (const auto* run = std::get_if<standalone::RunOptions>(&parsed)) return standalone::runBatch(*run);
    if (const auto* qc = std::get_if<standalone::QcOptions>(&parsed)) return standalone::runQc(*qc);
    if (const auto* shell = std::get_if<standalone::ShellOptions>(&parsed))
      return standalone::runShell(*shell);
    return genostat::common::showAnswer(std::get<genostat::common::Answer>(parsed), standalone::kFailure);
  } catch (const std::exception& error) {
    const std::string reason = genostat::common::shownName(error.what());
    std::fprintf(stderr, "%s\n", standalone::translated("error: {1}", {reason}).c_str());
    return standalone::kFailure;
  }
}
