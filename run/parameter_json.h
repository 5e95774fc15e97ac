// The parameter document: everything that an analysis learns about its job.
#pragma once

#include <string>

#include "entry/record/geno_job_settings.h"

namespace genostat {

// {"fastq_data":[{"adapter":…,"custom_sequence":…,"CSV_Path":…,"files":[…]}]}, compact and in this order;
// "folder":… takes the place of "files" when the job lists no files. A text ends at its first NUL byte;
// bytes above 0x7F pass unchanged.
std::string parameterJson(const GenoJobSettings& settings);

// The text with a backslash before each quotation mark; backslashes are not doubled.
std::string escapeQuotes(const std::string& json);

}  // namespace genostat
