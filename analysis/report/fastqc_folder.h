// A folder with a FastQC data file for each sample.
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "analysis/report/result_csv.h"

namespace genostat::analysis {

// Where a sample's data goes, and the file name that stands in it.
struct FastqcPlace {
  std::string folder;    // "<sample>_fastqc", shortened where no system would take it; UTF-8
  std::string fileName;  // as it was given, with the number of a repeated sample
};

// One place for each row, all different, also where upper and lower case are one: of samples with the same
// name the second one is called "<sample>.2". File names begin with the names of the samples.
std::vector<FastqcPlace> fastqcPlaces(const std::vector<ResultRow>& rows);

// Writes <folder>/<sample>_fastqc/fastqc_data.txt for each row, each file whole or not at all. What others
// may have put there is not followed where it is a link. Throws a Failure (OutputFailed).
void writeFastqcFolder(const std::filesystem::path& folder, const std::vector<ResultRow>& rows);

// Runs a step that writes to `target`; a std::runtime_error of it becomes a Failure (OutputFailed).
void writeOutput(const std::filesystem::path& target, const std::function<void()>& step);

}  // namespace genostat::analysis
