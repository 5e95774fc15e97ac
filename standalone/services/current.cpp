#include "standalone/services/current.h"

#include <utility>

#include "standalone/services/current_scope.h"

namespace genostat::standalone {

namespace {

SessionScope::Parts& session() {
  static SessionScope::Parts parts;
  return parts;
}

const Command*& command() {
  static const Command* running = nullptr;
  return running;
}

}  // namespace

const Command* currentCommand() {
  return command();
}
DatasetStore* currentDatasets() {
  return session().datasets;
}
OutputDocument* currentOutput() {
  return session().output;
}

void reportDiagnostic(const Diagnostic& diagnostic) {
  if (session().report) session().report(diagnostic);
}

SessionScope::SessionScope(Parts parts) {
  session() = std::move(parts);
}
SessionScope::~SessionScope() {
  session() = {};
}

CommandScope::CommandScope(const Command& running) {
  command() = &running;
}
CommandScope::~CommandScope() {
  command() = nullptr;
}

}  // namespace genostat::standalone
