// DATASET NAME, ACTIVATE and CLOSE; CACHE and EXECUTE.

#include <string>

#include "common/text/ascii.h"
#include "standalone/data/dataset.h"
#include "standalone/language/translation.h"
#include "standalone/procedures/commands.h"
#include "standalone/syntax/expectation.h"
#include "standalone/syntax/token_cursor.h"

namespace genostat::standalone {

namespace {

// A name and the tokens that it is made of; no text when the command gives none.
struct GivenName {
  std::string text;
  SourceRange range;
};

// Names of jobs become names of datasets, and a job may be called run-1 or run.1: whatever
// stands together without a blank is one name.
GivenName readName(const Command& command) {
  TokenCursor cursor(command);
  cursor.next();
  cursor.next();
  noteExpected(cursor.peek(), &Expectation::dataset);
  const Token first = cursor.next();
  if (first.kind == Token::Kind::End) return {{}, first.range};
  GivenName name{first.text, first.range};
  while (!cursor.atEnd() && cursor.peek().range.begin == name.range.end) {
    name.range.end = cursor.next().range.end;
  }
  cursor.expectEnd();
  const bool quoted = first.kind == Token::Kind::String && name.range.end == first.range.end;
  if (!quoted)
    name.text = name.range.source->text.substr(name.range.begin, name.range.end - name.range.begin);
  return name;
}

// Runs an operation of the store and puts its complaint at the name.
template <typename Operation>
void atName(const GivenName& name, Operation operation) {
  try {
    operation();
  } catch (const CommandError& error) {
    Diagnostic diagnostic = error.diagnostic();
    diagnostic.range = name.range;
    throw CommandError(diagnostic);
  }
}

}  // namespace

void runDatasetName(CommandContext& context) {
  const GivenName name = readName(context.command);
  if (name.text.empty()) {
    context.warn({Diagnostic::Severity::Warning,
                  translated("{1} gives no name; the dataset stays without one", {"DATASET NAME"}),
                  name.range,
                  {}});
    return;
  }
  atName(name, [&] { context.datasets.nameActive(name.text); });
}

void runDatasetActivate(CommandContext& context) {
  const GivenName name = readName(context.command);
  // The syntax of a job without a name says it without one, right after DATASET NAME has warned.
  if (name.text.empty()) return;
  atName(name, [&] { context.datasets.activate(name.text); });
}

void runDatasetClose(CommandContext& context) {
  const GivenName name = readName(context.command);
  if (name.text.empty()) {
    throw CommandError(Diagnostic{
        {},
        translated("expected {1}, found {2}",
                   {translated("the name of a dataset, ALL or *"), translated("the end of the command")}),
        name.range,
        {}});
  }
  if (name.text == "*") {
    const Dataset* active = context.datasets.active();
    if (active == nullptr)
      throw CommandError(Diagnostic{{}, translated("no dataset is active"), name.range, {}});
    if (active->name.empty()) return context.datasets.deactivate();
    return context.datasets.close(active->name);
  }
  if (common::equalsIgnoreCase(name.text, "ALL")) return context.datasets.closeAll();
  atName(name, [&] { context.datasets.close(name.text); });
}

// Data are read and computed at once here, so there is nothing left to do.
void runCacheOrExecute(CommandContext& context) {
  TokenCursor cursor(context.command);
  const Token& name = cursor.next();
  cursor.expectEnd();
  if (context.datasets.active() == nullptr) TokenCursor::fail(translated("no dataset is active"), name);
}

}  // namespace genostat::standalone
