// The file in which an analysis says more about its failure: a JSON object whose text members fill
// the placeholders of the messages.
#pragma once

#include <rapidjson/document.h>

#include <string>

namespace genostat {

// The result path with its last "." and what follows replaced by ".error". The "." is searched in the
// whole path; without any, ".error" is appended.
std::string errorDetailsPath(const std::string& resultPath);

// Reads, echoes to standard output and removes the error-details file of a result. An empty document,
// and a line on standard output, when there is none; whatever the parser left when it is no JSON.
rapidjson::Document readErrorDetails(const std::string& resultPath);

// The text with each {{NAME}} replaced by the text member NAME. What was inserted is not searched again
// for the same name.
std::string replacePlaceholders(const std::string& text, const rapidjson::Document& details);

}  // namespace genostat
