// The program genostat-analysis: FASTQ files in, one row of quality metrics per file out.

#include <CLI/CLI.hpp>

#include <algorithm>
#include <charconv>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

#include "analysis/job.h"
#include "analysis/request/samples.h"
#include "platform/documents/option_documents.h"
#include "platform/program.h"

namespace {

using genostat::analysis::ExitCode;
using genostat::analysis::Failure;
using genostat::analysis::QcOptions;

constexpr const char* kUsage =
    "Usage: genostat-analysis qc [OPTIONS] FILES-OR-FOLDERS...\n"
    "       genostat-analysis SCRIPT PAYLOAD\n"
    "Run with --help for more information.\n";

constexpr const char* kExamples =
    "Examples:\n"
    "  genostat-analysis qc reads.fastq.gz                        the table on standard output\n"
    "  genostat-analysis qc --adapter illumina --csv qc.csv run1/ extra.fq\n"
    "  genostat-analysis qc --json qc.json --csv qc.csv *.fastq.gz\n"
    "  genostat-analysis qc --fastqc-data data run1/              also what MultiQC reads\n"
    "  genostat-analysis qc --adapter ACGTACGTACGT --threads 4 --json - reads.fq\n"
    "  zstd -dc reads.fastq.zst | genostat-analysis qc -          the sample is called stdin";

constexpr const char* kExitStatusHelp =
    "Exit status:\n"
    "  0   all files were measured\n"
    "  1   another failure, such as a path whose links lead in a circle\n"
    "  2   no such file or folder\n"
    "  3   the parameters of a job are no JSON document\n"
    "  4   the parameters of a job are incomplete or wrong\n"
    "  5   a file breaks the rules of FASTQ or of its compression, or reading it fails on the way\n"
    "  7   no permission to read\n"
    "  8   a folder without FASTQ files\n"
    "  9   an output cannot be written\n"
    "  10  --adapter is no sequence of A, C, G, T, N\n"
    "  12  memory ran out\n"
    "  13  wrong arguments";

constexpr unsigned kMaximumThreads = 256;

// The library takes a text in square brackets apart at its commas, but such is a good name of a file. So it
// gets one with a zero character in front, which no argument holds.
constexpr char kTakenLiterally = '\0';

std::string protectedArgument(const std::string& text) {
  return text.starts_with('[') && text.ends_with(']') ? kTakenLiterally + text : text;
}

std::string givenArgument(const std::string& text) {
  return text.starts_with(kTakenLiterally) ? text.substr(1) : text;
}

// Decimal, also with zeros in front, which the library would take for the sign of an octal number.
std::optional<unsigned> threadsFrom(const std::string& text) {
  unsigned value = 0;
  const std::from_chars_result end = std::from_chars(text.data(), text.data() + text.size(), value);
  const bool whole = end.ec == std::errc() && end.ptr == text.data() + text.size();
  if (!whole || value < 1 || value > kMaximumThreads) return std::nullopt;
  return value;
}

// Why a value cannot be taken, for the library; empty when it can.
std::string threadsProblem(const std::string& text) {
  if (threadsFrom(text)) return {};
  return "'" + text + "' is no number of threads; expected 1 to " + std::to_string(kMaximumThreads);
}

std::string phredProblem(const std::string& text) {
  return text == "33" || text == "64" ? std::string()
                                      : "'" + text + "' is no quality offset; expected 33 or 64";
}

// An unquoted *.fastq behind the option would otherwise cost the first of the reads.
std::string outputProblem(const std::string& text) {
  if (text.empty()) return "expected a file name, or - for standard output";
  if (genostat::analysis::hasFastqEnding(text))
    return "'" + text + "' is named like reads and would be overwritten";
  return {};
}

std::string folderProblem(const std::string& text) {
  return text.empty() || text == genostat::analysis::kStandardStream ? "expected a folder" : std::string();
}

void addQcOptions(CLI::App& command, QcOptions& qc) {
  const CLI::callback_t takePaths = [&qc](const CLI::results_t& paths) {
    qc.paths = paths;
    return true;
  };
  command
      .add_option("PATHS", takePaths,
                  "FASTQ files (plain, gzip, bgzf), folders of them, or - for standard input")
      ->type_name("TEXT")
      ->expected(1, -1)
      ->allow_extra_args()
      ->required();
  command
      .add_option("--adapter", qc.adapter,
                  "What to look for in the reads: none (all known ones), illumina, nextera, or a sequence of "
                  "A, C, G, T, N")
      ->type_name("none|illumina|nextera|SEQUENCE");
  command
      .add_option_function<std::string>(
          "--threads", [&qc](const std::string& text) { qc.threads = threadsFrom(text).value_or(0); },
          "How many threads work; as many as there are processors when not given")
      ->type_name("N")
      ->check(threadsProblem);
  command
      .add_option("--phred", qc.phredOffset,
                  "What is taken off a quality character's code; by content when not given")
      ->type_name("33|64")
      ->check(phredProblem);
  command.add_option("--csv", qc.csv, "Where the table goes: a file, or - for standard output (the default)")
      ->type_name("FILE|-")
      ->check(outputProblem);
  command
      .add_option("--json", qc.json,
                  "Where the whole result goes, with its curves; with -, there is no table by default")
      ->type_name("FILE|-")
      ->check(outputProblem);
  command
      .add_option("--fastqc-data", qc.fastqcData,
                  "A folder for FastQC's data files, one per sample, which report programs read")
      ->type_name("FOLDER")
      ->check(folderProblem);
  // Before the checks.
  for (CLI::Option* option : command.get_options()) {
    option->transform(givenArgument);
  }
  command.footer(std::string(kExamples) + "\n\n" + kExitStatusHelp);
}

ExitCode run(std::vector<std::string> arguments) {
  CLI::App app("Quality metrics of FASTQ files, one row of a CSV table per file.", "genostat-analysis");
  const auto answerVersion = [](CLI::App& command) {
    command.set_version_flag("--version", "genostat-analysis " GENOSTAT_VERSION);
  };
  answerVersion(app);
  app.footer(std::string(kExamples) + "\n\n" + kExitStatusHelp);
  genostat::platform::offerDocuments(app, "genostat(1)");
  // A path that starts with a slash is no option, on no system.
  app.allow_windows_style_options(false);

  std::string script;
  std::string payload;
  CLI::Option* scriptOption = app.add_option("SCRIPT", script, "Name of a script; accepted and not read");
  CLI::Option* payloadOption = app.add_option("PAYLOAD", payload, "The job's parameters, JSON in base64");

  QcOptions qc;
  CLI::App* qcCommand = app.add_subcommand("qc", "Measure files or the FASTQ files of folders");
  qcCommand->allow_windows_style_options(false);
  answerVersion(*qcCommand);
  addQcOptions(*qcCommand, qc);

  try {
    std::transform(arguments.begin(), arguments.end(), arguments.begin(), protectedArgument);
    // The library takes the arguments from the back.
    std::reverse(arguments.begin(), arguments.end());
    app.parse(std::move(arguments));
    const bool launched = !scriptOption->empty() && !payloadOption->empty();
    if (qcCommand->parsed() == launched || (qcCommand->parsed() && !scriptOption->empty())) {
      throw CLI::ParseError("expected either qc and paths, or SCRIPT and PAYLOAD",
                            static_cast<int>(ExitCode::WrongArguments));
    }
    if (qc.json == genostat::analysis::kStandardStream && qcCommand->count("--csv") == 0) qc.csv.clear();
  } catch (const CLI::Success& success) {
    app.exit(success);
    return ExitCode::Success;
  } catch (const CLI::ParseError& error) {
    printFailure(Failure(ExitCode::WrongArguments, {}, error.what()));
    std::cerr << kUsage;
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
