#include "results/csv_counts.h"

#include <algorithm>
#include <fstream>
#include <string>

namespace genostat {

namespace {

// Reads a line without its LF or CR LF; a CR at the end of the file belongs to the line.
bool readLine(std::istream& file, std::string& line) {
  if (!std::getline(file, line)) return false;
  if (!file.eof() && line.ends_with('\r')) line.pop_back();
  return true;
}

std::int32_t fieldCount(const std::string& header) {
  if (header.empty()) return 0;
  const auto commas = std::count(header.begin(), header.end(), ',');
  return static_cast<std::int32_t>(commas) + (header.back() == ',' ? 0 : 1);
}

}  // namespace

std::optional<CsvCounts> countCsv(const char* path) {
  std::ifstream file(path, std::ios::binary);
  if (!file.is_open()) return std::nullopt;
  CsvCounts counts;
  std::string line;
  if (!readLine(file, line)) return counts;
  counts.variables = fieldCount(line);
  while (readLine(file, line)) {
    if (!line.empty()) ++counts.samples;
  }
  return counts;
}

}  // namespace genostat
