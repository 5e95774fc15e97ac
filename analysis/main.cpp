// The program genostat-analysis: FASTQ files in, one row of quality metrics per file out.

#include <CLI/CLI.hpp>

#include <algorithm>
#include <iostream>
#include <string>
#include <vector>

#include "analysis/job.h"
#include "platform/program.h"

namespace {

using genostat::analysis::ExitCode;
using genostat::analysis::Failure;

constexpr const char* kExamples =
    "Examples:\n"
    "  genostat-analysis qc reads.fastq.gz\n"
    "  genostat-analysis qc --adapter illumina --csv result.csv run1/ extra.fq";

ExitCode run(std::vector<std::string> arguments) {
  CLI::App app("Quality metrics of FASTQ files, one row of a CSV table per file.", "genostat-analysis");
  app.set_version_flag("--version", "genostat-analysis " GENOSTAT_VERSION);
  app.footer(kExamples);
  // A path that starts with a slash is no option, on no system.
  app.allow_windows_style_options(false);

  std::string script;
  std::string payload;
  CLI::Option* scriptOption = app.add_option("SCRIPT", script, "Name of a script; accepted and not read");
  CLI::Option* payloadOption = app.add_option("PAYLOAD", payload, "The job's parameters, JSON in base64");

  genostat::analysis::QcOptions qc;
  CLI::App* qcCommand = app.add_subcommand("qc", "Measure files or the FASTQ files of folders");
  qcCommand->allow_windows_style_options(false);
  qcCommand->add_option("PATHS", qc.paths, "FASTQ files, plain or gzip, and folders of them")->required();
  qcCommand->add_option("--adapter", qc.adapter, "none, illumina, nextera, or a sequence of A, C, G, T, N");
  qcCommand->add_option("--csv", qc.csv, "CSV file to write; - for standard output");
  qcCommand->footer(kExamples);

  try {
    // The library takes the arguments from the back.
    std::reverse(arguments.begin(), arguments.end());
    app.parse(std::move(arguments));
    const bool launched = !scriptOption->empty() && !payloadOption->empty();
    if (qcCommand->parsed() == launched || (qcCommand->parsed() && !scriptOption->empty())) {
      throw CLI::ParseError("expected either SCRIPT and PAYLOAD, or qc and paths",
                            static_cast<int>(ExitCode::WrongArguments));
    }
  } catch (const CLI::Success& success) {
    app.exit(success);
    return ExitCode::Success;
  } catch (const CLI::ParseError& error) {
    printFailure(Failure(ExitCode::WrongArguments, {}, error.what()));
    std::cerr << "Usage: genostat-analysis SCRIPT PAYLOAD\n"
                 "       genostat-analysis qc [--adapter ADAPTER] [--csv FILE] PATHS...\n"
                 "Run with --help for more information.\n";
    return ExitCode::WrongArguments;
  }
  return qcCommand->parsed() ? runQc(qc) : genostat::analysis::runRequest(payload);
}

}  // namespace

int main(int argc, char** argv) {
  genostat::platform::prepareStandardStreams();
  try {
    return static_cast<int>(run(genostat::platform::commandLineArguments(argc, argv)));
  } catch (const std::exception& error) {
    printFailure(Failure(ExitCode::General, {}, error.what()));
    return static_cast<int>(ExitCode::General);
  }
}
