// The parameter document of a launched analysis.
//
// A JSON object whose member "fastq_data" is an array of one object with the string members
// "adapter" (NONE, ILLUMINA, NEXTERA or CUSTOM), "custom_sequence" and "CSV_Path", and either
// "files" (an array of strings) or "folder" (a string). Members of other names are ignored.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/request/adapter.h"

namespace genostat::analysis {

struct Request {
  Adapter adapter;
  std::string csvPath;             // as it stands in the document: in the system's narrow encoding or UTF-8
  std::vector<std::string> files;  // UTF-8; only when there is no folder
  std::optional<std::string> folder;  // UTF-8
};

// Reads the document from base64. Throws a Failure: InvalidJson, InvalidConfiguration or InvalidAdapter.
Request parseRequest(std::string_view payload);

// Where the result was to go, from a document that may otherwise be wrong; never throws for its content.
std::optional<std::string> csvPathOfRequest(std::string_view payload);

}  // namespace genostat::analysis
