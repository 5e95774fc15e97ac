// Files that get the results at the end of a run.
#pragma once

#include <string>
#include <string_view>

#include "common/files/output_file.h"

namespace genostat::standalone {

// `name` is the path as the user gave it, in UTF-8. Throws std::runtime_error, a sentence for the user, when
// no file can come to stand there: better now than when the work is done.
common::OutputFile prepareOutputFile(const std::string& name);

// Throws std::runtime_error as above.
void writeOutputFile(const common::OutputFile& file, std::string_view text);

}  // namespace genostat::standalone
