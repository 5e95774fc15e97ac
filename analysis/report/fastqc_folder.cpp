#include "analysis/report/fastqc_folder.h"

#include <cstddef>
#include <set>
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

}  // namespace

std::vector<FastqcPlace> fastqcPlaces(const std::vector<ResultRow>& rows) {
  std::set<std::string> taken;
  for (const ResultRow& row : rows) {
    taken.insert(common::upperCase(common::cutToBytes(row.sample, kLongestStem)));
  }
  std::set<std::string> used;
  std::vector<FastqcPlace> places;
  places.reserve(rows.size());
  for (const ResultRow& row : rows) {
    const std::string stem(common::cutToBytes(row.sample, kLongestStem));
    std::string number;
    if (!used.insert(common::upperCase(stem)).second) {
      for (int next = 2; number.empty() || !taken.insert(common::upperCase(stem + number)).second; ++next) {
        number = "." + std::to_string(next);
      }
    }
    places.push_back(
        {stem + number + "_fastqc", row.sample + number + row.fileName.substr(row.sample.size())});
  }
  return places;
}

void writeFastqcFolder(const fs::path& folder, const std::vector<ResultRow>& rows) {
  const std::vector<FastqcPlace> places = fastqcPlaces(rows);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const fs::path place = folder / platform::pathFromUtf8(places[i].folder);
    writeOutput(place, [&] {
      std::error_code error;
      fs::create_directories(place, error);
      if (error) throw std::runtime_error(error.message());
    });
    const fs::path file = place / "fastqc_data.txt";
    writeOutput(file, [&] {
      common::writeFile(file, fastqcData(rows[i].result, places[i].fileName), common::PlaceLink::Replace,
                        common::LockedFile::FolderLink::Refuse);
    });
  }
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
