// The program genostat-analysis: FASTQ files in, one row of quality metrics per file out.

#include <exception>
#include <iostream>
#include <variant>

#include "analysis/job.h"
#include "analysis/options.h"
#include "platform/running_program.h"
#include "platform/terminal.h"

namespace {

using genostat::analysis::Answer;
using genostat::analysis::ExitCode;
using genostat::analysis::Failure;
using genostat::analysis::LaunchedJob;
using genostat::analysis::QcOptions;

ExitCode show(const Answer& answer) {
  const bool succeeds = answer.code == ExitCode::Success;
  std::ostream& out = succeeds ? std::cout : std::cerr;
  out << answer.text << std::flush;
  if (succeeds && !out) return ExitCode::OutputFailed;
  return answer.code;
}

ExitCode run(int argc, char** argv) {
  const auto parsed =
      genostat::analysis::parseArguments(genostat::platform::commandLineArguments(argc, argv));
  if (const auto* qc = std::get_if<QcOptions>(&parsed)) return runQc(*qc);
  if (const auto* job = std::get_if<LaunchedJob>(&parsed))
    return genostat::analysis::runRequest(job->payload);
  return show(std::get<Answer>(parsed));
}

}  // namespace

int main(int argc, char** argv) {
  genostat::platform::prepareStandardStreams();
  try {
    return static_cast<int>(run(argc, argv));
  } catch (const std::exception& error) {
    printFailure(Failure(ExitCode::General, {}, error.what()));
    return static_cast<int>(ExitCode::General);
  }
}
