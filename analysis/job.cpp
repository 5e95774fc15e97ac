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
#include "analysis/outputs.h"
#include "analysis/report/error_details.h"
#include "analysis/report/progress.h"
#include "analysis/report/progress_file.h"
#include "analysis/request/request.h"
#include "analysis/request/samples.h"
#include "common/cli/columns.h"
#include "common/files/output_file.h"
#include "common/files/part_file.h"
#include "common/files/path_fault.h"
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

using Outputs = std::vector<std::unique_ptr<JobOutput>>;

// Measures the samples into the outputs, which are still to be finished. Returns the failures of samples that
// the job has survived.
std::vector<Failure> measureInto(const Outputs& outputs, const std::vector<Sample>& samples,
                                 const CrewOptions& options) {
  std::vector<Failure> failures;
  measureSamples(samples, options, [&](std::size_t i, SampleOutcome outcome) {
    const Sample& sample = samples[i];
    ResultRow row = {sample.name,
                     sample.path.empty() ? std::string(kStandardStream) : sample.givenPath,
                     sample.fileName,
                     options.adapter.kind,
                     {},
                     {}};
    if (auto* const result = std::get_if<SampleResult>(&outcome)) {
      row.result = std::move(*result);
    } else {
      failures.push_back(std::get<Failure>(outcome));
      row.notRead = failures.back().what();
    }
    for (const auto& output : outputs) {
      output->add(row);
    }
  });
  return failures;
}

void finish(const Outputs& outputs) {
  for (const auto& output : outputs) {
    output->finish();
  }
}

// Beside the result: why samples were not read.
std::filesystem::path notReadFileOf(std::filesystem::path result) {
  result += ".notread";
  return result;
}

// The outputs of a launched job. What its environment asks for beside the result may fail without it.
Outputs launchedOutputs(const std::filesystem::path& target, const std::vector<Sample>& samples) {
  Outputs outputs;
  const auto warn = [](const std::string& sentence) { printLine("warning", sentence); };
  try {
    const std::filesystem::path folder = platform::environmentPath("GENOSTAT_FASTQC_DATA");
    if (!folder.empty()) {
      tryFolder(folder);
      outputs.push_back(fastqcOutput(folder, samples, warn));
    }
  } catch (const std::exception& error) {
    warn(error.what());
  }
  outputs.push_back(notReadOutput(notReadFileOf(target), kPlaceOfJob));
  // Last: where it stands, all is there.
  outputs.push_back(csvOutput(TextOutput(target, kPlaceOfJob), false));
  return outputs;
}

// Measures the samples and writes the result file.
void analyseInto(const std::filesystem::path& target, const std::vector<Sample>& samples,
                 CrewOptions options) {
  common::removeAbandonedPartsOnce(target.parent_path(), removeAbandonedProgress);
  tryOutput(target, samples, ExitCode::OutputFailed, kPlaceOfJob);
  JobProgress progress(bytesOf(samples), samples.size());
  options.progress = &progress;
  const ProgressFile progressFile(progress, target, {});
  const Outputs outputs = launchedOutputs(target, samples);
  const std::vector<Failure> failures = measureInto(outputs, samples, options);
  // Where nothing at all could be read, the job has failed.
  if (!failures.empty() && failures.size() == samples.size()) throw failures.front();
  finish(outputs);
}

// Runs a whole job; `report` gets its failure.
ExitCode runGuarded(const std::function<ExitCode()>& job, const std::function<void(const Failure&)>& report) {
  const auto fail = [&](const Failure& failure) {
    report(failure);
    return failure.code();
  };
  try {
    return job();
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

// A wider line than the terminal's would be broken, and could not be rewritten.
std::size_t progressWidth() {
  const int terminal = platform::standardErrorTerminal().width;
  const int wanted = common::columnsWanted();
  return static_cast<std::size_t>(wanted > 0 ? std::min(wanted, terminal) : terminal);
}

// As measureInto, with a line on the terminal meanwhile.
std::vector<Failure> measureWithProgress(const Outputs& outputs, const std::vector<Sample>& samples,
                                         CrewOptions options) {
  if (!platform::standardErrorTerminal().movesCursor) return measureInto(outputs, samples, options);
  JobProgress progress(bytesOf(samples), samples.size());
  options.progress = &progress;
  const ProgressDisplay display(progress, std::cerr, progressWidth);
  return measureInto(outputs, samples, options);
}

TextOutput outputAt(const std::string& place) {
  return place == kStandardStream ? TextOutput()
                                  : TextOutput(platform::pathFromUtf8(place), common::PlaceLink::Follow);
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
          std::filesystem::remove(notReadFileOf(pathFromRequest(*csvPath)), ignored);
        }
        const Request request = parseRequest(payload);
        const bool keepGoing = platform::environmentPath("GENOSTAT_KEEP_GOING") == "1";
        const SampleOptions sampleOptions = {.keepBad = keepGoing};
        std::vector<Sample> samples = request.folder ? samplesOfFolder(*request.folder, sampleOptions)
                                                     : samplesOfFiles(request.files, sampleOptions);
        tellApart(samples);
        analyseInto(pathFromRequest(request.csvPath), samples,
                    {.adapter = request.adapter, .keepGoing = keepGoing});
        return ExitCode::Success;
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
        crew.keepGoing = options.keepGoing;
        std::vector<Sample> samples = samplesOfPaths(options.paths, {.keepBad = options.keepGoing,
                                                                     .forPeople = true,
                                                                     .recursive = options.recursive,
                                                                     .inputName = options.inputName});
        tellApart(samples);
        for (const std::string& place : {options.csv, options.json}) {
          if (place.empty() || place == kStandardStream) continue;
          tryOutput(platform::pathFromUtf8(place), samples, ExitCode::WrongArguments,
                    common::PlaceLink::Follow);
        }
        Outputs outputs;
        if (!options.csv.empty()) outputs.push_back(csvOutput(outputAt(options.csv), options.safeCsv));
        if (!options.json.empty()) outputs.push_back(jsonOutput(outputAt(options.json), crew.adapter));
        if (!options.fastqcData.empty()) {
          const std::filesystem::path folder = platform::pathFromUtf8(options.fastqcData);
          tryFolder(folder);
          outputs.push_back(fastqcOutput(folder, samples));
        }
        const std::vector<Failure> failures = measureWithProgress(outputs, samples, crew);
        finish(outputs);
        std::ranges::for_each(failures, printFailure);
        return failures.empty() ? ExitCode::Success : ExitCode::General;
      },
      printFailure);
}

void printFailure(const Failure& failure) {
  printLine("error", failure.what());
}

}  // namespace genostat::analysis
