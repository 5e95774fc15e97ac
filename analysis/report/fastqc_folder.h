// A folder with a FastQC data file for each sample.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "analysis/report/result_csv.h"

namespace genostat::analysis {

// Where a sample's data goes, and the file name that stands in it.
struct FastqcPlace {
  std::string folder;    // "<sample>_fastqc", shortened where no system would take it; UTF-8
  std::string fileName;  // as it was given, with the number of a repeated sample
};

// One place for each sample, all different, also where upper and lower case are one: of samples with the same
// name the second one is called "<sample>.2". `fileNames` begin with the names of the samples.
std::vector<FastqcPlace> fastqcPlaces(const std::vector<std::string>& samples,
                                      const std::vector<std::string>& fileNames);

class FastqcFolder {
 public:
  // The folder need not exist; neither is it made yet. Throws a Failure (OutputFailed) when nothing could be
  // written there.
  explicit FastqcFolder(std::filesystem::path folder);

  // Writes <folder>/<sample>_fastqc/fastqc_data.txt for each row, each file whole or not at all. Throws a
  // Failure (OutputFailed).
  void write(const std::vector<ResultRow>& rows, const std::vector<std::string>& fileNames) const;

 private:
  std::filesystem::path folder_;
};

}  // namespace genostat::analysis
