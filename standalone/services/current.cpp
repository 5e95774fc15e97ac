#include "standalone/services/current.h"

#include <atomic>
#include <string>
#include <utility>

#include "host/control.h"
#include "host/language.h"

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

std::string& metadata() {
  static std::string json;
  return json;
}

std::atomic<ZORV_Adapter*> currentAdapter{nullptr};

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

void setJobMetadata(int workbookId, int paragraphId) {
  metadata() = R"({"job_metadata":{"workbook_id":")" + std::to_string(workbookId) + R"(","paragraph_id":")" +
               std::to_string(paragraphId) + R"("}})";
}

void setCurrentAdapter(ZORV_Adapter* adapter) {
  currentAdapter = adapter;
}

}  // namespace genostat::standalone

std::string GetMetaDataJson() {
  return genostat::standalone::metadata();
}
void resetMetadataJson() {
  genostat::standalone::metadata().clear();
}
ZORV_Adapter* GetAdapter() {
  return genostat::standalone::currentAdapter;
}
