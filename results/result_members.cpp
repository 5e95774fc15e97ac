// The manager's members for result files and generated syntax.
#include "entry/record/geno_job_settings.h"
#include "jobs/geno_stat_algo_manager.h"
#include "platform/files.h"
#include "results/csv_counts.h"
#include "results/post_job_syntax.h"

bool GenoStatAlgoManager::parseCSVForCounts(const char* path, std::int32_t& samples,
                                            std::int32_t& variables) {
  const std::optional<genostat::CsvCounts> counts = genostat::countCsv(path);
  if (!counts) return false;
  samples = counts->samples;
  variables = counts->variables;
  return true;
}

void GenoStatAlgoManager::preparePostJobSyntax(const GenoJobSettings* settings, std::string& out,
                                               bool failed) {
  if (settings != nullptr) out += genostat::postJobSyntax(*settings, failed);
}

void GenoStatAlgoManager::cleanUpCSVFileCreated(GenoJobSettings* settings) {
  // Nobody waits for the outcome.
  if (settings != nullptr) genostat::platform::removeIfExists(settings->csvFilePath());
}
