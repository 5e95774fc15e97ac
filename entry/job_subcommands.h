// What PRINT, DELETE and JOB say, written into the job record.
#pragma once

#include <string>

#include "entry/record/geno_job_settings.h"
#include "host/syntax_parser.h"

namespace genostat {

// Each does nothing when its subcommand is absent or `settings` is null.

// The counts and the message code of a finished job (0 where not given); the mode becomes PRINT.
void interpretPrint(const CommandSpec& spec, GenoJobSettings* settings);
// The path of a result file; the mode becomes DELETE.
void interpretDelete(const CommandSpec& spec, GenoJobSettings* settings);
// Input, adapter and name of a job. Throws GenomicParserException for an input file that is
// missing or empty and for a name that cannot be used. Run after the other two: only in mode SUBMIT are
// files and names checked.
void interpretJob(const CommandSpec& spec, GenoJobSettings* settings);

// True when a job may be submitted under this name; throws GenomicParserException otherwise.
bool checkJobName(const std::string& name);

}  // namespace genostat
