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
#include "common/text/ascii.h"
#include "common/text/nearest_word.h"
#include "common/text/printable_text.h"
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

// Runs a step that writes to `target`; a failure of it becomes one of the output.
void writeOutput(const std::filesystem::path& target, const std::function<void()>& step) {
  try {
    step();
  } catch (const std::runtime_error& error) {
    const std::string path = platform::pathToUtf8(target);
    throw Failure(ExitCode::OutputFailed, path, path + ": writing failed: " + error.what());
  }
}

std::vector<ResultRow> rowsOf(const std::vector<Sample>& samples, const CrewOptions& options) {
  std::vector<SampleResult> results = measureSamples(samples, options);
  std::vector<ResultRow> rows;
  rows.reserve(samples.size());
  for (std::size_t i = 0; i < samples.size(); ++i) {
    rows.push_back({samples[i].name, options.adapter.kind, std::move(results[i])});
  }
  return rows;
}

// An output must not cost the reads themselves.
void refuseInputs(const std::filesystem::path& target, const std::vector<Sample>& samples, ExitCode code) {
  for (const Sample& sample : samples) {
    std::error_code different;
    if (std::filesystem::equivalent(target, sample.path, different)) {
      const std::string path = platform::pathToUtf8(target);
      throw Failure(code, path, path + ": this is one of the files to measure");
    }
  }
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

std::vector<std::string> fileNamesOf(const std::vector<Sample>& samples) {
  std::vector<std::string> names;
  std::transform(samples.begin(), samples.end(), std::back_inserter(names),
                 [](const Sample& sample) { return sample.fileName; });
  return names;
}

// Measures the samples and writes the result file.
std::vector<ResultRow> analyseInto(const std::filesystem::path& target, const std::vector<Sample>& samples,
                                   CrewOptions options) {
  refuseInputs(target, samples, ExitCode::OutputFailed);
  // An impossible output is reported before hours of reading. The trial file does not stay: a job that is
  // killed while it reads leaves nothing behind.
  writeOutput(target, [&] { common::OutputFile trial(target); });
  JobProgress progress;
  progress.expect(bytesOf(samples), samples.size());
  options.progress = &progress;
  const ProgressFile progressFile(progress, target, {});
  std::vector<ResultRow> rows = rowsOf(samples, options);
  const std::string csv = resultCsv(rows);
  writeOutput(target, [&] { common::writeFile(target, csv); });
  removeAbandonedProgress(target.parent_path());
  return rows;
}

// What the launcher's environment asks for beside the result. The job does not depend on it.
void writeFastqcDataIfAsked(const std::vector<ResultRow>& rows, const std::vector<Sample>& samples) {
  try {
    const std::filesystem::path folder = platform::environmentPath("GENOSTAT_FASTQC_DATA");
    if (!folder.empty()) FastqcFolder(folder).write(rows, fileNamesOf(samples));
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
    common::writeFile(pathFromRequest(errorDetailsPath(csvPath)), errorDetails(failure));
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

// Finds early what would make an output fail or cost the reads themselves.
void tryOutput(const std::string& place, const std::vector<Sample>& samples) {
  if (place.empty() || place == kStandardStream) return;
  const std::filesystem::path target = platform::pathFromUtf8(place);
  refuseInputs(target, samples, ExitCode::WrongArguments);
  writeOutput(target, [&] { common::OutputFile trial(target); });
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
    shared = common::quoteForMessage(options.json);
  }
  throw Failure(ExitCode::WrongArguments, options.json, "--csv and --json cannot both go to " + shared);
}

void putOutput(const std::string& place, const std::string& text) {
  if (place != kStandardStream) {
    const std::filesystem::path target = platform::pathFromUtf8(place);
    writeOutput(target, [&] { common::writeFile(target, text); });
    return;
  }
  std::cout << text << std::flush;
  if (!std::cout) {
    throw Failure(ExitCode::OutputFailed, "standard output", "standard output: writing failed");
  }
}

std::vector<std::string> filesOf(const std::vector<Sample>& samples) {
  std::vector<std::string> files;
  std::transform(samples.begin(), samples.end(), std::back_inserter(files), [](const Sample& sample) {
    return sample.isStandardInput ? std::string(kStandardStream) : sample.givenPath;
  });
  return files;
}

// A wider line than the terminal's would be broken, and could not be rewritten.
std::size_t progressWidth() {
  const int terminal = platform::standardErrorTerminal().width;
  const int wanted = common::columnsWanted();
  return static_cast<std::size_t>(wanted > 0 ? std::min(wanted, terminal) : terminal);
}

std::vector<ResultRow> rowsWithProgress(const std::vector<Sample>& samples, CrewOptions options) {
  if (!platform::standardErrorTerminal().movesCursor) return rowsOf(samples, options);
  JobProgress progress;
  progress.expect(bytesOf(samples), samples.size());
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
        const std::vector<ResultRow> rows =
            analyseInto(pathFromRequest(request.csvPath), samples, {.adapter = request.adapter});
        writeFastqcDataIfAsked(rows, samples);
      },
      [&](const Failure& failure) {
        // Whoever waits for the job shows what the file says; it is not said twice.
        if (!csvPath || !writeErrorDetails(*csvPath, failure)) printFailure(failure);
      });
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
        tryOutput(options.csv, samples);
        tryOutput(options.json, samples);
        std::optional<FastqcFolder> fastqc;
        if (!options.fastqcData.empty()) fastqc.emplace(platform::pathFromUtf8(options.fastqcData));
        const std::vector<ResultRow> rows = rowsWithProgress(samples, crew);
        if (!options.csv.empty()) putOutput(options.csv, resultCsv(rows));
        if (!options.json.empty()) putOutput(options.json, resultJson(rows, filesOf(samples), crew.adapter));
        if (fastqc) fastqc->write(rows, fileNamesOf(samples));
      },
      printFailure);
}

void printFailure(const Failure& failure) {
  printLine("error", failure.what());
}

}  // namespace genostat::analysis
