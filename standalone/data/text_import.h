// Delimited text files as datasets.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "standalone/data/column_loader.h"
#include "standalone/data/dataset.h"
#include "standalone/data/record_reader.h"

namespace genostat::standalone {

struct ImportRequest {
  std::filesystem::path file;
  DelimitedFormat format;
  std::size_t firstCase = 1;  // the record that is the first case
  double percentage = 95;     // of a column's values that must be numbers for an automatic numeric type
  char decimal = '.';
  std::vector<ImportColumn> columns;
};

struct ImportResult {
  Dataset dataset;
  std::vector<std::string> warnings;  // sentences without a final period
};

// Reads the file in chunks; memory is the dataset's columns and one chunk. Lines without any
// character are no cases. Missing values are filled in where a line has too few, values beyond
// the last column are left out, each with a warning that names the first such line. A column
// without any value is numeric and all missing. The file is read a second time when a column
// turns out to be a string variable that holds numbers too.
// Throws ImportError when the file cannot be read or is empty.
ImportResult importText(const ImportRequest& request);

}  // namespace genostat::standalone
