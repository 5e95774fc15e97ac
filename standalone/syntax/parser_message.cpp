#include <initializer_list>

#include "host/syntax_parser.h"
#include "standalone/session/current.h"

using genostat::standalone::Command;
using genostat::standalone::Diagnostic;

// The error points at the command's first word: its cause is not the syntax, but what was asked.
void ParserMessage::GenericError(const char* text, const char* insert1, const char* insert2,
                                 const char* insert3, const char* insert4, const char* insert5) {
  Diagnostic diagnostic;
  diagnostic.message = text ? text : "the command failed";
  const char* separator = ": ";
  for (const char* insert : {insert1, insert2, insert3, insert4, insert5}) {
    if (!insert) continue;
    diagnostic.message += separator;
    diagnostic.message += insert;
    separator = ", ";
  }
  if (const Command* command = genostat::standalone::currentCommand()) {
    diagnostic.range = command->tokens.front().range;
  } else if (!procedureTitle_.empty()) {
    diagnostic.message = procedureTitle_ + ": " + diagnostic.message;
  }
  genostat::standalone::reportDiagnostic(diagnostic);
}
