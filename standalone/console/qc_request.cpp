#include "standalone/console/qc_request.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "platform/program.h"
#include "standalone/syntax/diagnostic.h"
#include "standalone/syntax/keyword.h"

namespace genostat::console {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void refuseQc(const std::string& message) {
  throw QcRequestError("error: " + message);
}

bool namesFastqFile(const std::string& name) {
  std::string upper = standalone::toUpperAscii(name);
  if (upper.ends_with(".GZ")) upper.resize(upper.size() - 3);
  return !upper.starts_with('.') && (upper.ends_with(".FASTQ") || upper.ends_with(".FQ"));
}

// The files that an analysis of this folder takes, in its order.
std::vector<std::string> fastqFilesIn(const std::string& folder) {
  std::vector<std::string> names;
  std::error_code error;
  for (fs::directory_iterator entry(platform::pathFromUtf8(folder), error), end; !error && entry != end;
       entry.increment(error)) {
    std::error_code ignored;
    std::string name = platform::pathToUtf8(entry->path().filename());
    if (namesFastqFile(name) && !entry->is_directory(ignored)) names.push_back(std::move(name));
  }
  std::ranges::sort(names);
  return names;
}

// Empty when the file can be analysed, else why not.
std::string faultOfFile(const fs::path& file) {
  std::error_code error;
  const fs::file_status status = fs::status(file, error);
  if (!fs::exists(status)) return "no such file or folder";
  if (!fs::is_regular_file(status)) return "it is no regular file";
  if (!std::ifstream(file, std::ios::binary)) return "it cannot be opened";
  const auto size = fs::file_size(file, error);
  return !error && size == 0 ? "it is empty" : "";
}

// All that is wrong with the inputs at once, one line each.
void checkInputs(const std::vector<std::string>& inputs, QcRequest& request) {
  std::string faults;
  const auto addFault = [&faults](const std::string& input, const std::string& reason) {
    if (!faults.empty()) faults += '\n';
    faults += "error: cannot read " + standalone::quoteForMessage(input) + ": " + reason;
  };
  for (const std::string& input : inputs) {
    const fs::path path = platform::pathFromUtf8(input);
    // No string of the command language can hold them.
    if (input.find_first_of("\r\n") != std::string::npos) {
      addFault(input, "its name holds a line break");
      continue;
    }
    std::error_code error;
    if (!fs::is_directory(path, error)) {
      const std::string fault = faultOfFile(path);
      if (!fault.empty()) addFault(input, fault);
      request.files.push_back(input);
      continue;
    }
    const std::vector<std::string> names = fastqFilesIn(input);
    if (names.empty()) addFault(input, "no FASTQ files (.fastq, .fq, .fastq.gz, .fq.gz) in this folder");
    if (inputs.size() == 1) request.folder = input;
    const bool ended =
        input.ends_with('/') || input.ends_with(static_cast<char>(fs::path::preferred_separator));
    for (const std::string& name : names) {
      if (name.find_first_of("\r\n") != std::string::npos) addFault(name, "its name holds a line break");
      request.files.push_back(std::string(input).append(ended ? "" : "/").append(name));
    }
  }
  if (!faults.empty()) throw QcRequestError(faults);
}

std::string adapterKeyword(const std::string& adapter) {
  std::string upper = standalone::toUpperAscii(adapter);
  for (const char* keyword : {"NONE", "ILLUMINA", "NEXTERA"}) {
    if (upper == keyword) return upper;
  }
  if (upper.find_first_not_of("ACGTN") == std::string::npos) {
    return upper.empty() ? "NONE" : "CUSTOM(" + upper + ")";
  }
  refuseQc("--adapter: expected none, illumina, nextera or a sequence of A, C, G, T and N, found " +
           standalone::quoteForMessage(adapter));
}

// The name stands in the syntax that the job sends back, in quotes and without.
std::string checkedName(const std::string& name) {
  if (name.empty()) return "AUTO";
  const bool fits = std::ranges::all_of(name, [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 0x20 && byte != 0x7F && std::string_view("'\"/*").find(c) == std::string_view::npos;
  });
  if (!fits) {
    refuseQc("--name: a job's name holds no quotes, slashes, asterisks and control characters, found " +
             standalone::quoteForMessage(name));
  }
  return name;
}

}  // namespace

QcRequest checkQcOptions(const QcOptions& options) {
  QcRequest request;
  request.adapter = adapterKeyword(options.adapter);
  request.name = checkedName(options.name);
  if (!options.descriptives.empty())
    request.descriptives = parseColumnList("--descriptives", options.descriptives, Wanted::Numbers);
  if (!options.frequencies.empty())
    request.frequencies = parseColumnList("--frequencies", options.frequencies, Wanted::Any);
  if (!options.correlations.empty()) {
    request.correlations = parseColumnList("--correlations", options.correlations, Wanted::Numbers);
    if (options.noPearson && !options.spearman && !options.kendall)
      refuseQc("--no-pearson leaves no coefficient; add --spearman or --kendall");
    if (request.correlations.size() < 2) refuseQc("--correlations: expected two columns or more");
  }
  if (!options.regression.empty()) {
    QcFormula formula = parseFormula("--regression", options.regression);
    request.dependent = std::move(formula.dependent);
    request.predictors = std::move(formula.predictors);
  }
  checkInputs(options.inputs, request);
  return request;
}

}  // namespace genostat::console
