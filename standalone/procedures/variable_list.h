// Lists of variables in commands: names, `first TO last`, ALL, with or without commas between.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/data/dataset.h"
#include "standalone/session/command_context.h"
#include "standalone/syntax/token_cursor.h"

namespace genostat::standalone {

// The active dataset; throws CommandError at the command's name when there is none.
const Dataset& requireActiveDataset(const CommandContext& context);

// The numeric variables of the list that stands at the cursor, up to the subcommand's end or the
// word `stop` (upper case; empty: none), each once. String variables are left out with a warning, silently
// where ALL names them. Throws CommandError for an unknown variable, an empty list, and a list without a
// numeric variable.
std::vector<const Column*> parseNumericVariables(CommandContext& context, const Dataset& dataset,
                                                 TokenCursor& cursor, std::string_view stop = {});

// The same, with string variables.
std::vector<const Column*> parseVariables(const Dataset& dataset, TokenCursor& cursor);

// "x1, x2"
std::string joinedNames(const std::vector<const Column*>& variables);

// [variable][case]
std::vector<std::span<const double>> valuesOf(const std::vector<const Column*>& variables);

// Whether a list stands at the cursor, right after the command's name, rather than one of the subcommands. A
// variable goes before an abbreviated subcommand, unless an equals sign follows.
bool atBareVariableList(const Dataset& dataset, const TokenCursor& cursor, TokenCursor::Keywords subcommands);

// The token that names `variable` in the list that begins at `first`, a token of a command; `first` itself
// when the variable is in the list without being named.
const Token& tokenNaming(const Token& first, const Column& variable);

}  // namespace genostat::standalone
