// The program genostat-analysis: FASTQ files in, one row of quality metrics per file out.

#include <exception>
#include <variant>

#include "analysis/job.h"
#include "analysis/options.h"
#include "platform/lifeline.h"
#include "platform/running_program.h"
#include "platform/terminal.h"

namespace {

using genostat::analysis::ExitCode;
using genostat::analysis::LaunchedJob;
using genostat::analysis::QcOptions;
namespace common = genostat::common;
namespace platform = genostat::platform;

// As a shell reports a program that was told to end.
constexpr int kTerminated = 143;

int run(int argc, char** argv) {
  const auto parsed = genostat::analysis::parseArguments(platform::commandLineArguments(argc, argv));
  if (const auto* job = std::get_if<LaunchedJob>(&parsed)) {
    platform::onParentGone([payload = job->payload] {
      genostat::analysis::giveUpRequest(payload);
      platform::exitNow(kTerminated);
    });
    return static_cast<int>(genostat::analysis::runRequest(job->payload));
  }
  if (const auto* answer = std::get_if<common::Answer>(&parsed)) {
    return common::showAnswer(*answer, static_cast<int>(ExitCode::OutputFailed));
  }
  const ExitCode code = genostat::analysis::runQc(std::get<QcOptions>(parsed));
  // For people as in other programs.
  return code == ExitCode::WrongArguments ? common::kWrongUsage : static_cast<int>(code);
}

}  // namespace

int main(int argc, char** argv) {
  platform::prepareStandardStreams();
  try {
    return run(argc, argv);
  } catch (const std::exception& error) {
    printFailure(genostat::analysis::Failure(ExitCode::General, {}, error.what()));
    return static_cast<int>(ExitCode::General);
  }
}
