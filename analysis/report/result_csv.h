// The result table as CSV: UTF-8, commas, line feeds, a header line, one line per sample.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "analysis/metrics/sample_result.h"
#include "analysis/request/adapter.h"

namespace genostat::analysis {

struct ResultRow {
  std::string sample;    // its name
  std::string file;      // as the user gave it
  std::string fileName;  // without folder
  AdapterKind adapter = AdapterKind::None;
  SampleResult result;
  std::string notRead;  // why there is no result; empty where there is one
};

// The table's lines with their line feeds: the column names, and one sample. The 27 columns are always there;
// one that has no value for a sample is empty. A sample that was not read has its name and adapter only.
std::string csvHeader();
std::string csvLine(const ResultRow& row);

// The columns of one row in their order, as they stand in the table before quoting.
struct ColumnText {
  common::ResultColumn column;
  std::string text;  // empty when there is no value
};
std::vector<ColumnText> columnTexts(const ResultRow& row);

// A field as it stands in a CSV line: in double quotes when it holds a comma, a quote or a line break.
std::string csvField(std::string_view text);

}  // namespace genostat::analysis
