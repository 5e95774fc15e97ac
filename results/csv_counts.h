// How many rows and columns a result file holds.
#pragma once

#include <cstdint>
#include <optional>

namespace genostat {

struct CsvCounts {
  std::int32_t samples = 0;    // lines below the header that are not empty
  std::int32_t variables = 0;  // fields of the header, cut at every comma; a final comma adds none
};

// None when there is no regular file, or it cannot be opened. Lines end in LF or CR LF on every system;
// quotes and the end-of-file character of old text files have no meaning here.
std::optional<CsvCounts> countCsv(const char* path);

}  // namespace genostat
