// One job: from samples to result rows, or from a request to its result file.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/failure.h"
#include "analysis/report/result_csv.h"
#include "analysis/request/adapter.h"
#include "analysis/request/samples.h"

namespace genostat::analysis {

// Reads one sample from start to end. Throws a Failure that names its file.
SampleResult analyseSample(const Sample& sample);

// One row per sample, in order. Throws the first Failure.
std::vector<ResultRow> analyseSamples(const std::vector<Sample>& samples, AdapterKind adapter);

// The launched form: does what the base64 parameter document says. The result appears under its final
// name whole or not at all. A failure is told on standard error and, once the document names a
// result file, in the error-details file beside that; a job that succeeds leaves no such file.
ExitCode runRequest(std::string_view payload);

// What a person asks for on the command line, UTF-8.
struct QcOptions {
  std::vector<std::string> paths;  // files, folders, and "-" for standard input
  std::string adapter = "none";    // none, illumina, nextera in any case, or a sequence
  unsigned threads = 0;            // 0: as many as the process may run at once
  std::optional<int> phredOffset;  // 33 or 64; else as each file's lowest quality says
  std::string csv = "-";           // a file, "-" for standard output, empty for none
  std::string json;                // likewise
};

// The people's form. Failures are told on standard error only.
ExitCode runQc(const QcOptions& options);

// Tells a failure on standard error, in one line.
void printFailure(const Failure& failure);

}  // namespace genostat::analysis
