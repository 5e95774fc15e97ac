// One job: from a request to its result.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/request/failure.h"

namespace genostat::analysis {

// The launched form: does what the base64 parameter document says. The result appears under its final
// name whole or not at all. A failure is written to the error-details file beside it, or to standard error
// where that is impossible; a job that succeeds leaves no such file. While it runs,
// <result>.progress says how far it is. Where the environment has GENOSTAT_FASTQC_DATA, FastQC's data files
// are written into that folder as well; that failing is only a warning. No link at the place of a file is
// followed: in a folder that users share, another one may have put it there.
ExitCode runRequest(std::string_view payload);

// For one that runs and that nobody waits for any more, before the program is ended: removes its progress.
void giveUpRequest(std::string_view payload);

// What a person asks for on the command line, UTF-8.
struct QcOptions {
  std::vector<std::string> paths;   // files, folders, and "-" for standard input
  std::string adapter = "none";     // none, illumina, nextera in any case, or a sequence
  unsigned threads = 0;             // 0: as many as the process may run at once
  std::optional<int> phredOffset;   // 33 or 64; else as each file's lowest quality says
  bool recursive = false;           // folders stand for the folders in them as well
  std::string inputName = "stdin";  // of the sample that comes from standard input
  bool keepGoing = false;           // a sample that cannot be read does not end the job
  bool safeCsv = false;             // no cell that a spreadsheet computes
  std::string csv = "-";            // a file, "-" for standard output, empty for none
  std::string json;                 // likewise
  std::string fastqcData;           // a folder for FastQC's data files, empty for none
};

// The form for people. Failures go to standard error only.
ExitCode runQc(const QcOptions& options);

// Prints a failure on standard error, in one line.
void printFailure(const Failure& failure);

}  // namespace genostat::analysis
