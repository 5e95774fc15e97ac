// The tables of GENOSTAT /PRINT.
#pragma once

#include <functional>
#include <string>

#include "entry/record/geno_job_settings.h"

class BpProcedure;

namespace genostat {

// Gives the user's text for a key.
using Localiser = std::function<std::string(const std::string& key)>;

// Adds "Summary", with the record's counts, and "Details", with its message and its dataset, to the output of
// the procedure. `writeMessage` puts the message into the record; it is called between the two, so that the
// host sees the look-ups in this order. Command thread only.
void showOutputTables(const GenoJobSettings& settings, BpProcedure* procedure, const Localiser& localised,
                      const std::function<void()>& writeMessage);

}  // namespace genostat
