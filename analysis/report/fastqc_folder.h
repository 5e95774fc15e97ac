// A folder with a FastQC data file for each sample.
#pragma once

#include <filesystem>
#include <functional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "analysis/report/result_csv.h"

namespace genostat::analysis {

// Where a sample's data goes, and the file name that stands in it.
struct FastqcPlace {
  std::string folder;    // "<sample>_fastqc", shortened where no system would take it; UTF-8
  std::string fileName;  // as it was given, with the number of a repeated sample
};

// One place for each sample, all different, also where upper and lower case are one: of samples with the same
// name the second one is called "<sample>.2". File names begin with the names of the samples.
class FastqcPlaces {
 public:
  // `samples`: the names of all.
  explicit FastqcPlaces(const std::vector<std::string>& samples);

  // Of the samples in their order.
  FastqcPlace next(const std::string& sample, const std::string& fileName);

 private:
  std::set<std::string> taken_;
  std::set<std::string> used_;
};

// Writes <folder>/<sample>_fastqc/fastqc_data.txt for one sample after another, each file whole or not at
// all. What others may have put there is not followed where it is a link. Throws a Failure (OutputFailed).
class FastqcFolder {
 public:
  FastqcFolder(std::filesystem::path folder, const std::vector<std::string>& samples)
      : folder_(std::move(folder)), places_(samples) {}

  // Nothing is written for one that was not read.
  void add(const ResultRow& row);

 private:
  std::filesystem::path folder_;
  FastqcPlaces places_;
};

// Runs a step that writes to `target`; a std::runtime_error of it becomes a Failure (OutputFailed).
void writeOutput(const std::filesystem::path& target, const std::function<void()>& step);

}  // namespace genostat::analysis
