// What DESCRIPTIVES, FREQUENCIES, CORRELATIONS and REGRESSION ask for, written into the job record.
#pragma once

#include "entry/record/geno_job_settings.h"
#include "host/syntax_parser.h"

namespace genostat {

// Each does nothing when its subcommand is absent or `settings` is null. A subcommand without
// parameters requests its analysis with the defaults. Names and numbers are not checked here:
// the host does that when it runs the generated syntax.
void interpretDescriptives(const CommandSpec& spec, GenoJobSettings* settings);
void interpretFrequencies(const CommandSpec& spec, GenoJobSettings* settings);
void interpretCorrelations(const CommandSpec& spec, GenoJobSettings* settings);
void interpretRegression(const CommandSpec& spec, GenoJobSettings* settings);

}  // namespace genostat
