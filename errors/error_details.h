// The file in which an analysis says more about its failure: a JSON object whose text members fill
// the placeholders of the messages.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace genostat {

// The names and values of the object's text members, in their order in the file.
using ErrorDetails = std::vector<std::pair<std::string, std::string>>;

// The result path with its last "." and what follows replaced by ".error". The "." is searched in the
// whole path; without any, ".error" is appended.
std::string errorDetailsPath(const std::string& resultPath);

// Reads, echoes to standard output and removes the error-details file of a result. Empty, with a line on
// standard output, when there is no such file; empty as well when it holds no JSON object.
ErrorDetails readErrorDetails(const std::string& resultPath);

// The text with each {{NAME}} replaced by the text member NAME. What was inserted is not searched again
// for the same name.
std::string replacePlaceholders(const std::string& text, const ErrorDetails& details);

}  // namespace genostat
