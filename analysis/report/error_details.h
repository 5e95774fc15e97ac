// The error-details file that a failed job leaves beside its result's place.
#pragma once

#include <string>
#include <string_view>

#include "analysis/request/failure.h"

namespace genostat::analysis {

// The result path up to its last '.', wherever in the path that stands, and ".error".
std::string errorDetailsPath(std::string_view resultPath);

// A JSON object: "ERROR_MESSAGE" with the whole sentence, and the member that completes the text of the
// failure's code, such as "FILE_PATH", where the code has one.
std::string errorDetails(const Failure& failure);

}  // namespace genostat::analysis
