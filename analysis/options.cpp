#include "analysis/options.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>
#include <cstddef>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

#include "analysis/request/samples.h"
#include "common/files/fastq_names.h"
#include "common/text/printable_text.h"
#include "platform/path_text.h"

namespace genostat::analysis {

namespace {

using common::CommandHelp;
using common::HelpSection;

HelpSection examples() {
  return {"Examples",
          {{"genostat-analysis qc reads.fastq.gz", "the table on standard output"},
           {"genostat-analysis qc --adapter illumina --csv qc.csv run1/ extra.fq", {}},
           {"genostat-analysis qc --json qc.json --csv qc.csv *.fastq.gz", {}},
           {"genostat-analysis qc --fastqc-data data run1/", "also what MultiQC reads"},
           {"genostat-analysis qc --adapter ACGTACGTACGT --threads 4 --json - reads.fq", {}},
           {"zstd -dc reads.fastq.zst | genostat-analysis qc -", "the sample is called stdin"}},
          true};
}

HelpSection environment() {
  return {"Environment",
          {{"COLUMNS",
            "the most that a line of help or of the progress may take, if the terminal is not narrower"},
           {"TERM", "dumb: no progress is shown"}}};
}

HelpSection exitStatus() {
  return {"Exit status",
          {{"0", "all files were measured"},
           {"1",
            "with --keep-going, a sample could not be read; or another failure, such as a path whose links "
            "lead in a "
            "circle"},
           {"2", "wrong usage, or no such file or folder"},
           {"5", "a file breaks the rules of FASTQ or of its compression, or reading it fails on the way"},
           {"7", "no permission to read"},
           {"8", "a folder without FASTQ files"},
           {"9", "an output cannot be written"},
           {"10", "--adapter is no sequence of A, C, G, T, N"},
           {"12", "memory ran out"}}};
}

HelpSection launchedExitStatus() {
  return {"Exit status of a launched job",
          {{"2", "no such file or folder"},
           {"3", "the parameters of the job are no JSON document"},
           {"4", "the parameters of the job are incomplete or wrong"},
           {"13", "wrong arguments"},
           {"others", "as above"}}};
}

CommandHelp programHelp() {
  return {{"The launched form is for hosts: it takes the parameters of one job and writes a result file.",
           "\"genostat-analysis qc --help\" lists the options of the form for people."},
          {examples(), environment(), exitStatus(), launchedExitStatus()},
          {{"SCRIPT", "name of a script; accepted and not read"},
           {"PAYLOAD", "the job's parameters, JSON in base64"}}};
}

CommandHelp qcHelp() {
  return {{"The table has one row per file, in the order in which they are given; the files of a folder come "
           "in the order of their names. Failures and the progress, which is shown on a terminal only, go to "
           "standard error. An option given twice counts as given last."},
          {examples(), environment(), exitStatus()},
          {}};
}

// An unquoted *.fastq after the option would otherwise cost the first of the reads.
std::string outputProblem(const std::string& file) {
  return common::hasFastqEnding(file)
             ? common::quotedName(file) + " is named like reads, which it would replace"
             : std::string();
}

std::string folderProblem(const std::string& folder) {
  return folder == kStandardStream ? "expected a folder, found " + common::quoteForMessage(folder)
                                   : std::string();
}

void addQcOptions(const common::Command& command, QcOptions& qc) {
  constexpr int kMaximumThreads = 256;
  static constexpr std::array<std::string_view, 2> kOffsets = {"33", "64"};
  command.addFiles(qc.paths, "FASTQ files (plain, gzip, bgzf), folders of them, or - for standard input");
  command.addText("--adapter", qc.adapter, "none|illumina|nextera|SEQUENCE",
                  "what to look for in the reads: none (all known ones), illumina, nextera, or a sequence of "
                  "A, C, G, T, N; default: none");
  command.addCount("--threads", 1, kMaximumThreads,
                   "how many threads work; default: as many as there are processors",
                   [&qc](int threads) { qc.threads = static_cast<unsigned>(threads); });
  command.addChoice("--phred", kOffsets, "what is taken off a quality character's code; default: by content",
                    [&qc](std::size_t index) { qc.phredOffset = index == 0 ? 33 : 64; });
  command
      .addText("--csv", qc.csv, "FILE|-",
               "where the table goes: a file, or - for standard output (the default)")
      ->check(outputProblem);
  command.app().add_flag("--recursive", qc.recursive, "take the folders in folders as well");
  command.addText("--name", qc.inputName, "NAME",
                  "what the sample from standard input is called; default: stdin");
  command.app().add_flag(
      "--keep-going", qc.keepGoing,
      "measure the others where a sample cannot be read; it keeps its place, with the reason");
  command.app().add_flag("--safe-csv", qc.safeCsv,
                         "an apostrophe before each text in the table that a spreadsheet would compute");
  command
      .addText("--json", qc.json, "FILE|-",
               "where the whole result goes, with its curves; with -, there is no table by default")
      ->check(outputProblem);
  command
      .addText("--fastqc-data", qc.fastqcData, "FOLDER",
               "a folder for FastQC's data files, one per sample, which report programs read")
      ->check(folderProblem);
}

// Reads, where a subcommand or a job's parameters are expected.
std::string commandForPath(const std::string& word) {
  std::error_code ignored;
  return common::hasFastqEnding(word) || std::filesystem::exists(platform::pathFromUtf8(word), ignored) ? "qc"
                                                                                                        : "";
}

// Two words that are nothing for people: a script's name and a job's parameters.
bool isLaunched(const std::vector<std::string>& arguments) {
  const bool words = std::ranges::none_of(arguments, [](const auto& one) { return one.starts_with('-'); });
  return arguments.size() == 2 && words && arguments.front() != "qc" && arguments.front() != "help";
}

}  // namespace

std::variant<QcOptions, LaunchedJob, common::Answer> parseArguments(std::vector<std::string> arguments) {
  const bool launched = isLaunched(arguments);
  if (launched && commandForPath(arguments.back()).empty()) return LaunchedJob{arguments.back()};
  common::CommandLine line({.name = "genostat-analysis",
                            .version = GENOSTAT_VERSION,
                            .description = "Quality metrics of FASTQ files, one row of a CSV table per file.",
                            .seeAlso = "genostat(1)",
                            .commandForPath = commandForPath},
                           programHelp());
  const common::Command command =
      line.addCommand("qc", "measure files, or the FASTQ files of folders", qcHelp());
  QcOptions qc;
  addQcOptions(command, qc);
  if (auto answer = line.parse(std::move(arguments))) {
    // Whoever launches a job knows this program's exit codes.
    if (launched) answer->status = static_cast<int>(ExitCode::WrongArguments);
    return *std::move(answer);
  }
  if (qc.json == kStandardStream && command.app().count("--csv") == 0) qc.csv.clear();
  return qc;
}

}  // namespace genostat::analysis
