#include "analysis/options.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

#include "analysis/request/samples.h"
#include "common/cli/argument_fault.h"
#include "common/cli/help_text.h"
#include "common/cli/option_documents.h"
#include "common/files/fastq_names.h"
#include "common/text/nearest_word.h"
#include "platform/path_text.h"

namespace genostat::analysis {

namespace {

using common::ArgumentFault;

constexpr const char* kAbout =
    "The launched form is for hosts: it takes the parameters of one job and writes a result file.\n"
    "\n"
    "\"genostat-analysis qc --help\" tells the options of the form for people.\n"
    "\n";

constexpr const char* kQcAbout =
    "The table has one row per file, in the order in which they are given; the files of a folder\n"
    "come in the order of their names. Failures and the progress, which is shown on a terminal\n"
    "only, go to standard error. An option given twice counts as given last.\n"
    "\n";

constexpr const char* kExamples =
    "Examples:\n"
    "  genostat-analysis qc reads.fastq.gz                        the table on standard output\n"
    "  genostat-analysis qc --adapter illumina --csv qc.csv run1/ extra.fq\n"
    "  genostat-analysis qc --json qc.json --csv qc.csv *.fastq.gz\n"
    "  genostat-analysis qc --fastqc-data data run1/              also what MultiQC reads\n"
    "  genostat-analysis qc --adapter ACGTACGTACGT --threads 4 --json - reads.fq\n"
    "  zstd -dc reads.fastq.zst | genostat-analysis qc -          the sample is called stdin\n"
    "\n";

constexpr const char* kEnvironment =
    "Environment:\n"
    "  COLUMNS   the most that a line of help or of the progress may take, if the terminal is not\n"
    "            narrower\n"
    "  TERM      dumb: no progress is shown\n"
    "\n";

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
    "  13  wrong arguments\n";

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
  if (common::hasFastqEnding(text)) return "'" + text + "' is named like reads and would be overwritten";
  return {};
}

std::string folderProblem(const std::string& text) {
  return text.empty() || text == kStandardStream ? "expected a folder" : std::string();
}

std::string pathProblem(const std::string& text) {
  return text.empty() ? "an empty name is no file" : std::string();
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
      ->required()
      ->check(pathProblem);
  command
      .add_option("--adapter", qc.adapter,
                  "what to look for in the reads: none (all known ones), illumina, nextera, or a sequence of "
                  "A, C, G, T, N; default: none")
      ->type_name("none|illumina|nextera|SEQUENCE")
      ->take_last();
  command
      .add_option_function<std::string>(
          "--threads", [&qc](const std::string& text) { qc.threads = threadsFrom(text).value_or(0); },
          "how many threads work; default: as many as there are processors")
      ->type_name("N")
      ->take_last()
      ->check(threadsProblem);
  command
      .add_option("--phred", qc.phredOffset,
                  "what is taken off a quality character's code; default: by content")
      ->type_name("33|64")
      ->take_last()
      ->check(phredProblem);
  command.add_option("--csv", qc.csv, "where the table goes: a file, or - for standard output (the default)")
      ->type_name("FILE|-")
      ->take_last()
      ->check(outputProblem);
  command
      .add_option("--json", qc.json,
                  "where the whole result goes, with its curves; with -, there is no table by default")
      ->type_name("FILE|-")
      ->take_last()
      ->check(outputProblem);
  command
      .add_option("--fastqc-data", qc.fastqcData,
                  "a folder for FastQC's data files, one per sample, which report programs read")
      ->type_name("FOLDER")
      ->take_last()
      ->check(folderProblem);
  // Before the checks.
  for (CLI::Option* option : command.get_options()) {
    option->transform(givenArgument);
  }
  command.footer(std::string(kQcAbout) + kExamples + kEnvironment + kExitStatusHelp);
}

Answer wrongArguments(const std::string& message, const std::string& program) {
  return {"genostat-analysis: error: " + message + "\nTry \"" + program + " --help\".\n",
          ExitCode::WrongArguments};
}

// Reads, where a subcommand or a job's parameters are expected.
bool isPath(const std::string& argument) {
  std::error_code ignored;
  return common::hasFastqEnding(argument) ||
         std::filesystem::exists(platform::pathFromUtf8(argument), ignored);
}

// `word` stands where a subcommand does, or a script of which no job follows.
std::string unknownCommand(const std::string& word) {
  if (isPath(word)) return "files are measured by \"genostat-analysis qc " + word + "\"";
  constexpr std::array<std::string_view, 1> kCommands = {"qc"};
  const auto meant = common::nearestWord(word, kCommands);
  return "unknown subcommand '" + word + "'" + (meant ? "; did you mean qc?" : "");
}

std::string messageOf(const ArgumentFault& fault) {
  using Kind = ArgumentFault::Kind;
  const std::string subject = givenArgument(fault.subject);
  switch (fault.kind) {
    case Kind::UnknownOption:
      return "unknown option '" + subject + "'" +
             (fault.meant.empty() ? "" : "; did you mean " + fault.meant + "?");
    case Kind::UnknownCommand:
      return unknownCommand(subject);
    case Kind::UnexpectedArgument:
      return "unexpected argument '" + subject + "'";
    case Kind::MissingValue:
      return subject + " needs a value: " + fault.detail;
    case Kind::MissingArgument:
      return "no files or folders are given";
    case Kind::MissingPartner:
      return subject + " needs " + fault.detail;
    case Kind::WrongValue:
      return fault.detail;
    case Kind::None:
      break;
  }
  return {};
}

}  // namespace

std::variant<QcOptions, LaunchedJob, Answer> parseArguments(std::vector<std::string> arguments) {
  CLI::App app("Quality metrics of FASTQ files, one row of a CSV table per file.", "genostat-analysis");
  common::shapeHelp(app, common::helpWidth);
  // In all commands. Extras are collected, so that the error can name what was meant.
  const auto prepare = [](CLI::App& command) {
    command.set_help_flag("-h,--help", "show this help and exit");
    command.set_version_flag("--version", "genostat-analysis " GENOSTAT_VERSION, "show the version and exit");
    // A path that starts with a slash is no option, on no system.
    command.allow_windows_style_options(false);
    command.allow_extras();
  };
  prepare(app);
  app.footer(std::string(kAbout) + kExamples + kEnvironment + kExitStatusHelp);
  common::offerDocuments(app, "genostat(1)");

  std::string script;
  std::string payload;
  app.add_option("SCRIPT", script, "name of a script; accepted and not read");
  CLI::Option* payloadOption = app.add_option("PAYLOAD", payload, "the job's parameters, JSON in base64");
  QcOptions qc;
  CLI::App& qcCommand = *app.add_subcommand("qc", "measure files, or the FASTQ files of folders");
  prepare(qcCommand);
  addQcOptions(qcCommand, qc);

  if (arguments.empty()) return Answer{app.help(), ExitCode::WrongArguments};
  if (arguments == std::vector<std::string>{"help"}) arguments = {"--help"};
  const bool helpWanted = common::asksForHelp(arguments);
  std::transform(arguments.begin(), arguments.end(), arguments.begin(), protectedArgument);
  // The library takes the arguments from the back.
  std::reverse(arguments.begin(), arguments.end());
  ArgumentFault fault;
  try {
    app.parse(std::move(arguments));
    fault = common::argumentFault(app, nullptr);
  } catch (const CLI::CallForHelp&) {
    // Below.
  } catch (const CLI::CallForVersion& version) {
    return Answer{version.what() + std::string("\n"), ExitCode::Success};
  } catch (const CLI::ParseError& error) {
    fault = common::argumentFault(app, &error);
  }
  // The library would also take it for an option's value.
  if (helpWanted) return Answer{app.help(), ExitCode::Success};
  using Kind = ArgumentFault::Kind;
  if (!qcCommand.parsed()) {
    const bool strayWord = fault.kind == Kind::UnknownCommand;
    if (fault.kind != Kind::None && !strayWord) return wrongArguments(messageOf(fault), "genostat-analysis");
    if (!strayWord && !payloadOption->empty() && !isPath(payload)) return LaunchedJob{payload};
    return wrongArguments(unknownCommand(script), "genostat-analysis");
  }
  if (fault.kind != Kind::None) return wrongArguments(messageOf(fault), "genostat-analysis qc");
  if (!script.empty()) {
    return wrongArguments("unexpected argument '" + script + "' in front of qc", "genostat-analysis qc");
  }
  if (qc.json == kStandardStream && qcCommand.count("--csv") == 0) qc.csv.clear();
  return qc;
}

}  // namespace genostat::analysis
