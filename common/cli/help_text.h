// Help in a terminal.
#pragma once

#include <string>
#include <vector>

#include "common/cli/program_model.h"
#include "common/text/filled_text.h"

namespace genostat::common {

// The help of a command, or of the program where there is no such command, in lines as wide as COLUMNS says
// or the terminal is, but from 40 to 100 columns.
std::string helpText(const ProgramModel& model, const std::string& command, Translate translated);

// Terms and what they mean beside each other, indented.
std::vector<std::string> alignedEntries(const std::vector<HelpEntry>& entries);

}  // namespace genostat::common
