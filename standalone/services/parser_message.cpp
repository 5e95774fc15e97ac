#include <algorithm>
#include <initializer_list>
#include <string_view>

#include "host/syntax_parser.h"
#include "standalone/language/translation.h"
#include "standalone/services/current.h"

using genostat::standalone::Command;
using genostat::standalone::Diagnostic;
using genostat::standalone::translated;

namespace {

// A module's sentence; its subject may follow after a colon.
std::string translatedModuleText(std::string_view text) {
  const std::size_t colon = std::min(text.find(": "), text.size());
  return translated(text.substr(0, colon)) + std::string(text.substr(colon));
}

}  // namespace

// The error points at the command's first word: its cause is not the syntax, but what was asked.
void ParserMessage::GenericError(const char* text, const char* insert1, const char* insert2,
                                 const char* insert3, const char* insert4, const char* insert5) {
  Diagnostic diagnostic;
  diagnostic.message = text ? translatedModuleText(text) : translated("the command failed");
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
