#include "tests/standalone/syntax/syntax_fixture.h"

#include <stdexcept>

#include "standalone/session/current.h"

namespace genostat::standalone {

namespace {

const Command* runningCommand = nullptr;
test::RunningCommand* recorder = nullptr;

}  // namespace

const Command* currentCommand() {
  return runningCommand;
}

void reportDiagnostic(const Diagnostic& diagnostic) {
  if (recorder) recorder->reported.push_back(renderDiagnostic(diagnostic));
}

namespace test {

SourcePtr makeSource(std::string_view text) {
  return std::make_shared<const SourceText>(SourceText{"run.syntax", std::string(text)});
}

Command scanOne(std::string_view text) {
  ScanResult result = scanCommands(makeSource(text));
  if (result.items.size() != 1 || result.items[0].error)
    throw std::logic_error("not one command: " + std::string(text));
  return std::move(result.items[0].command);
}

RunningCommand::RunningCommand(const Command& command) {
  runningCommand = &command;
  recorder = this;
}

RunningCommand::~RunningCommand() {
  runningCommand = nullptr;
  recorder = nullptr;
}

}  // namespace test

}  // namespace genostat::standalone
