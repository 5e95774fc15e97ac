#include "analysis/report/fastqc_folder.h"

#include <algorithm>
#include <cstddef>
#include <stdexcept>
#include <string_view>
#include <system_error>

#include "analysis/report/fastqc_data.h"
#include "analysis/request/failure.h"
#include "common/files/output_file.h"
#include "common/files/path_fault.h"
#include "common/text/ascii.h"
#include "common/text/utf8.h"
#include "platform/path_text.h"

namespace genostat::analysis {

namespace {

namespace fs = std::filesystem;

// Most file systems take names of 255 bytes; this leaves room for a number and the ending.
constexpr std::size_t kLongestStem = 240;

// A sample's name may begin with folders, which readers of the data would take off.
std::string joinedName(std::string sample) {
  std::ranges::replace(sample, '/', '_');
  return sample;
}

std::string stemOf(const std::string& sample) {
  return std::string(common::cutToBytes(joinedName(sample), kLongestStem));
}

}  // namespace

FastqcPlaces::FastqcPlaces(const std::vector<std::string>& samples) {
  for (const std::string& sample : samples) {
    taken_.insert(common::upperCase(stemOf(sample)));
  }
}

FastqcPlace FastqcPlaces::next(const std::string& sample, const std::string& fileName) {
  const std::string stem = stemOf(sample);
  std::string number;
  if (!used_.insert(common::upperCase(stem)).second) {
    for (int n = 2; number.empty() || !taken_.insert(common::upperCase(stem + number)).second; ++n) {
      number = "." + std::to_string(n);
    }
  }
  const std::string plainName = sample.substr(sample.rfind('/') + 1);
  const std::string ending =
      fileName.starts_with(plainName) ? fileName.substr(plainName.size()) : std::string();
  return {stem + number + "_fastqc", joinedName(sample) + number + ending};
}

void FastqcFolder::add(const ResultRow& row) {
  const FastqcPlace names = places_.next(row.sample, row.fileName);
  if (!row.notRead.empty()) return;
  const fs::path place = folder_ / platform::pathFromUtf8(names.folder);
  writeOutput(place, [&] {
    std::error_code error;
    fs::create_directories(place, error);
    if (error) throw std::runtime_error(error.message());
  });
  const fs::path file = place / "fastqc_data.txt";
  writeOutput(file, [&] {
    common::writeFile(file, fastqcData(row.result, names.fileName), common::PlaceLink::Replace,
                      common::LockedFile::FolderLink::Refuse);
  });
}

void writeOutput(const fs::path& target, const std::function<void()>& step) {
  try {
    step();
  } catch (const std::runtime_error& error) {
    const std::string path = platform::pathToUtf8(target);
    throw Failure(ExitCode::OutputFailed, path, common::cannotWrite(path, error.what()));
  }
}

}  // namespace genostat::analysis
