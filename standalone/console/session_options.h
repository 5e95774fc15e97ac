// What the subcommands that run a session have in common on the command line.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "standalone/console/options.h"

namespace CLI {
class App;
class Option;
class Validator;
}  // namespace CLI

namespace genostat::standalone {

// The part of a subcommand's footer that explains how the program ends, to be translated.
extern const char* const kExitStatusHelp;

// The part with examples, which are lines as platform/documents wants them.
std::string examplesHelp(const char* lines);

// --temp, --output and what else of RunOptions every session has; `options` outlives the command.
void addSessionOptions(CLI::App& command, RunOptions& options);

// The options of genostat qc.
void addQcOptions(CLI::App& qc, QcOptions& options);

// Why a value that should be one of `words` cannot be taken, with what may have been meant; `choices` is what
// could be said instead.
std::string describeChoice(std::string_view choices, std::string_view found,
                           std::span<const std::string_view> words);

// Refuses an empty value.
const CLI::Validator& notEmpty();

// An option with a text that is not empty; the last one counts. `type` as platform/documents wants it.
CLI::Option* addTextOption(CLI::App& command, const char* name, std::string& value, const char* type,
                           const std::string& description);

}  // namespace genostat::standalone
