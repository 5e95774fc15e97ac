#include "analysis/report/fastqc_folder.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <set>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <utility>

#include "analysis/report/fastqc_data.h"
#include "analysis/request/failure.h"
#include "common/files/output_file.h"
#include "common/files/part_file.h"
#include "common/text/ascii.h"
#include "common/text/utf8.h"
#include "platform/path_text.h"

namespace genostat::analysis {

namespace {

namespace fs = std::filesystem;

// Most file systems take names of 255 bytes; this leaves room for a number and the ending.
constexpr std::size_t kLongestStem = 240;

[[noreturn]] void failAt(const fs::path& place, const std::string& reason) {
  const std::string path = platform::pathToUtf8(place);
  throw Failure(ExitCode::OutputFailed, path, path + ": writing failed: " + reason);
}

}  // namespace

std::vector<FastqcPlace> fastqcPlaces(const std::vector<std::string>& samples,
                                      const std::vector<std::string>& fileNames) {
  std::set<std::string> taken;
  for (const std::string& sample : samples) {
    taken.insert(common::upperCase(common::cutToBytes(sample, kLongestStem)));
  }
  std::set<std::string> used;
  std::vector<FastqcPlace> places;
  places.reserve(samples.size());
  for (std::size_t i = 0; i < samples.size(); ++i) {
    const std::string stem(common::cutToBytes(samples[i], kLongestStem));
    std::string number;
    if (!used.insert(common::upperCase(stem)).second) {
      for (int next = 2; number.empty() || !taken.insert(common::upperCase(stem + number)).second; ++next) {
        number = "." + std::to_string(next);
      }
    }
    places.push_back(
        {stem + number + "_fastqc", samples[i] + number + fileNames.at(i).substr(samples[i].size())});
  }
  return places;
}

FastqcFolder::FastqcFolder(fs::path folder) : folder_(std::move(folder)) {
  try {
    common::tryFolder(folder_);
  } catch (const std::runtime_error& error) {
    failAt(folder_, error.what());
  }
}

void FastqcFolder::write(const std::vector<ResultRow>& rows,
                         const std::vector<std::string>& fileNames) const {
  std::vector<std::string> samples;
  std::transform(rows.begin(), rows.end(), std::back_inserter(samples),
                 [](const ResultRow& row) { return row.sample; });
  const std::vector<FastqcPlace> places = fastqcPlaces(samples, fileNames);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const fs::path folder = folder_ / platform::pathFromUtf8(places[i].folder);
    std::error_code error;
    fs::create_directories(folder, error);
    if (error) failAt(folder, error.message());
    const fs::path file = folder / "fastqc_data.txt";
    try {
      common::writeFile(file, fastqcData(rows[i].result, places[i].fileName));
    } catch (const std::runtime_error& failure) {
      failAt(file, failure.what());
    }
  }
}

}  // namespace genostat::analysis
