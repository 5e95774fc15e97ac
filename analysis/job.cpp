#include "analysis/job.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <iostream>
#include <iterator>
#include <memory>
#include <new>
#include <optional>
#include <system_error>
#include <utility>
#include <vector>

#include "analysis/crew.h"
#include "analysis/report/error_details.h"
#include "analysis/report/fastqc_folder.h"
#include "analysis/report/progress.h"
#include "analysis/report/progress_file.h"
#include "analysis/report/result_csv.h"
#include "analysis/report/result_json.h"
#include "analysis/request/request.h"
#include "analysis/request/samples.h"
#include "common/cli/columns.h"
#include "common/files/output_file.h"
#include "common/files/part_file.h"
#include "common/files/path_fault.h"
#include "common/text/ascii.h"
#include "common/text/nearest_word.h"
#include "common/text/printable_text.h"
#include "common/text/spreadsheet_text.h"
#include "common/text/utf8.h"
#include "platform/environment.h"
#include "platform/path_text.h"
#include "platform/terminal.h"

namespace genostat::analysis {

namespace {

// The system's narrow encoding, or UTF-8, which no narrow text but ASCII is likely to look like.
std::filesystem::path pathFromRequest(const std::string& bytes) {
  return common::isValidUtf8(bytes) ? platform::pathFromUtf8(bytes) : platform::pathFromNarrow(bytes);
}

// One line on standard error.
void printLine(const char* kind, const std::string& text) {
  // Below the cursor a host may show progress, which must not run into the line.
  const char* const eraseBelow = platform::standardErrorTerminal().movesCursor ? "\x1B[J" : "";
  std::cerr << std::string(eraseBelow) + kind + ": " + common::printableText(text) + "\n" << std::flush;
}

std::vector<ResultRow> rowsOf(const std::vector<Sample>& samples, const CrewOptions& options) {
  std::vector<SampleResult> results = measureSamples(samples, options);
  std::vector<ResultRow> rows;
  rows.reserve(samples.size());
  for (std::size_t i = 0; i < samples.size(); ++i) {
    const Sample& sample = samples[i];
    const std::string file(sample.isStandardInput ? kStandardStream : sample.givenPath);
    rows.push_back({sample.name, file, sample.fileName, options.adapter.kind, std::move(results[i])});
  }
  return rows;
}

// Finds early what would make an output fail, or cost the reads themselves: then the failure has this `code`.
// The trial file does not stay: a job that is killed while it reads leaves nothing behind.
void tryOutput(const std::filesystem::path& target, const std::vector<Sample>& samples, ExitCode code,
               common::PlaceLink link) {
  for (const Sample& sample : samples) {
    std::error_code different;
    if (std::filesystem::equivalent(target, sample.path, different)) {
      const std::string path = platform::pathToUtf8(target);
      throw Failure(code, path, common::cannotWrite(path, "this is one of the files to measure"));
    }
  }
  writeOutput(target, [&] { common::OutputFile trial(target, link); });
}

// Of all files together; 0 where one of them has no size.
std::uint64_t bytesOf(const std::vector<Sample>& samples) {
  std::uint64_t bytes = 0;
  for (const Sample& sample : samples) {
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(sample.path, error);
    if (error) return 0;
    bytes += size;
  }
  return bytes;
}

// A job's files lie where a host put them, which may be a folder that others share.
constexpr common::PlaceLink kPlaceOfJob = common::PlaceLink::Replace;

// Measures the samples and writes the result file.
std::vector<ResultRow> analyseInto(const std::filesystem::path& target, const std::vector<Sample>& samples,
                                   CrewOptions options) {
  common::removeAbandonedPartsOnce(target.parent_path(), removeAbandonedProgress);
  tryOutput(target, samples, ExitCode::OutputFailed, kPlaceOfJob);
  JobProgress progress(bytesOf(samples), samples.size());
  options.progress = &progress;
  const ProgressFile progressFile(progress, target, {});
  std::vector<ResultRow> rows = rowsOf(samples, options);
  const std::string csv = resultCsv(rows);
  writeOutput(target, [&] { common::writeFile(target, csv, kPlaceOfJob); });
  return rows;
}

// As tryOutput, for a folder, which need not exist.
void tryFolder(const std::filesystem::path& folder) {
  writeOutput(folder, [&] { common::tryFolder(folder); });
}

// What the launcher's environment asks for beside the result. The job does not depend on it.
void writeFastqcDataIfAsked(const std::vector<ResultRow>& rows) {
  try {
    const std::filesystem::path folder = platform::environmentPath("GENOSTAT_FASTQC_DATA");
    if (folder.empty()) return;
    tryFolder(folder);
    writeFastqcFolder(folder, rows);
  } catch (const std::exception& error) {
    printLine("warning", error.what());
  }
}

// Runs a whole job; `report` gets its failure.
ExitCode runGuarded(const std::function<void()>& job, const std::function<void(const Failure&)>& report) {
  const auto fail = [&](const Failure& failure) {
    report(failure);
    return failure.code();
  };
  try {
    job();
    return ExitCode::Success;
  } catch (const Failure& failure) {
    return fail(failure);
  } catch (const std::bad_alloc&) {
    return fail({ExitCode::OutOfMemory, "the request", "not enough memory"});
  } catch (const std::exception& error) {
    return fail({ExitCode::General, {}, error.what()});
  }
}

// False where that is impossible: where the result cannot be written, this file usually cannot either.
bool writeErrorDetails(const std::string& csvPath, const Failure& failure) {
  try {
    common::writeFile(pathFromRequest(errorDetailsPath(csvPath)), errorDetails(failure), kPlaceOfJob);
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

Adapter adapterFromOption(std::string_view option) {
  const std::optional<AdapterKind> kind = adapterKindFromName(common::upperCase(option));
  if (kind && *kind != AdapterKind::Custom) return {*kind, {}};
  constexpr std::array<std::string_view, 3> kNames = {"none", "illumina", "nextera"};
  const auto meant = common::nearestWord(option, kNames);
  if (meant && option.find_first_not_of("ACGTNacgtn") != std::string_view::npos) {
    throw Failure(
        ExitCode::InvalidAdapter, std::string(option),
        "unknown adapter " + common::quoteForMessage(option) + "; did you mean " + std::string(*meant) + "?");
  }
  return customAdapter(option);
}

// The second of two outputs in one file would replace the first.
void refuseSharedOutput(const QcOptions& options) {
  if (options.csv.empty() || options.json.empty()) return;
  std::string shared;
  if (options.csv == kStandardStream || options.json == kStandardStream) {
    if (options.csv != options.json) return;
    shared = "standard output";
  } else {
    const std::filesystem::path place = common::placeOf(platform::pathFromUtf8(options.json));
    std::error_code ignored;
    // Devices and pipes take one after the other.
    if (std::filesystem::is_other(place, ignored) ||
        common::placeOf(platform::pathFromUtf8(options.csv)) != place)
      return;
    shared = common::quotedName(options.json);
  }
  throw Failure(ExitCode::WrongArguments, options.json, "--csv and --json cannot both go to " + shared);
}

void putOutput(const std::string& place, const std::string& text) {
  if (place != kStandardStream) {
    const std::filesystem::path target = platform::pathFromUtf8(place);
    writeOutput(target, [&] { common::writeFile(target, text); });
    return;
  }
  // Data is exact, but it must not steer a terminal.
  const bool shown = platform::standardOutputTerminal().isTerminal;
  std::cout << (shown ? common::printableText(text, common::LineBreaks::Keep) : text) << std::flush;
  if (!std::cout) {
    throw Failure(ExitCode::OutputFailed, "standard output", "cannot write to standard output");
  }
}

// A wider line than the terminal's would be broken, and could not be rewritten.
std::size_t progressWidth() {
  const int terminal = platform::standardErrorTerminal().width;
  const int wanted = common::columnsWanted();
  return static_cast<std::size_t>(wanted > 0 ? std::min(wanted, terminal) : terminal);
}

std::vector<ResultRow> rowsWithProgress(const std::vector<Sample>& samples, CrewOptions options) {
  if (!platform::standardErrorTerminal().movesCursor) return rowsOf(samples, options);
  JobProgress progress(bytesOf(samples), samples.size());
  options.progress = &progress;
  const ProgressDisplay display(progress, std::cerr, progressWidth);
  return rowsOf(samples, options);
}

}  // namespace

ExitCode runRequest(std::string_view payload) {
  std::optional<std::string> csvPath;
  return runGuarded(
      [&] {
        csvPath = csvPathOfRequest(payload);
        if (csvPath) {
          // An old one would be taken for this job's.
          std::error_code ignored;
          std::filesystem::remove(pathFromRequest(errorDetailsPath(*csvPath)), ignored);
        }
        const Request request = parseRequest(payload);
        const std::vector<Sample> samples =
            request.folder ? samplesOfFolder(*request.folder) : samplesOfFiles(request.files);
        writeFastqcDataIfAsked(
            analyseInto(pathFromRequest(request.csvPath), samples, {.adapter = request.adapter}));
      },
      [&](const Failure& failure) {
        // Whoever waits for the job shows what the file says; it is not said twice.
        if (!csvPath || !writeErrorDetails(*csvPath, failure)) printFailure(failure);
      });
}

void giveUpRequest(std::string_view payload) {
  try {
    const std::optional<std::string> csvPath = csvPathOfRequest(payload);
    if (csvPath) removeProgress(pathFromRequest(*csvPath));
  } catch (const std::exception&) {
    // Such a job has written nothing.
  }
}

ExitCode runQc(const QcOptions& options) {
  return runGuarded(
      [&] {
        CrewOptions crew;
        crew.adapter = adapterFromOption(options.adapter);
        crew.phredOffset = options.phredOffset;
        crew.threads = options.threads;
        refuseSharedOutput(options);
        const std::vector<Sample> samples = samplesOfPaths(options.paths);
        for (const std::string& place : {options.csv, options.json}) {
          if (place.empty() || place == kStandardStream) continue;
          tryOutput(platform::pathFromUtf8(place), samples, ExitCode::WrongArguments,
                    common::PlaceLink::Follow);
        }
        const std::filesystem::path fastqc = platform::pathFromUtf8(options.fastqcData);
        if (!fastqc.empty()) tryFolder(fastqc);
        const std::vector<ResultRow> rows = rowsWithProgress(samples, crew);
        if (!options.csv.empty()) {
          const std::string csv = resultCsv(rows);
          putOutput(options.csv, options.safeCsv ? common::spreadsheetCsv(csv) : csv);
        }
        if (!options.json.empty()) putOutput(options.json, resultJson(rows, crew.adapter));
        if (!fastqc.empty()) writeFastqcFolder(fastqc, rows);
      },
      printFailure);
}

void printFailure(const Failure& failure) {
  printLine("error", failure.what());
}

}  // namespace genostat::analysis
