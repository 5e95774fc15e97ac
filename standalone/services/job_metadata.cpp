#include "standalone/services/job_metadata.h"

#include <string>

#include "host/control.h"

namespace genostat::standalone {

namespace {

std::string& metadata() {
  static std::string json;
  return json;
}

}  // namespace

void setJobMetadata(int workbookId, int paragraphId) {
  metadata() = R"({"job_metadata":{"workbook_id":")" + std::to_string(workbookId) + R"(","paragraph_id":")" +
               std::to_string(paragraphId) + R"("}})";
}

}  // namespace genostat::standalone

std::string GetMetaDataJson() {
  return genostat::standalone::metadata();
}
void resetMetadataJson() {
  genostat::standalone::metadata().clear();
}
