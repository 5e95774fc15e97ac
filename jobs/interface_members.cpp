// Members of the manager's interface that the module itself does not call; the header says why they exist.
#include "errors/error_details.h"
#include "jobs/geno_stat_algo_manager.h"
#include "platform/files.h"
#include "results/csv_counts.h"
#include "results/post_job_syntax.h"
#include "run/launch_command.h"
#include "run/parameter_json.h"
#include "run/paths.h"

std::string GenoStatAlgoManager::joinPath(const std::string& base, const std::string& name) {
  return genostat::joinPath(base, name);
}

std::string GenoStatAlgoManager::getFolderPath(const std::string& path) {
  return genostat::getFolderPath(path);
}

bool GenoStatAlgoManager::fileExists(const std::string& path) {
  return genostat::platform::fileExists(path);
}

bool GenoStatAlgoManager::directoryExists(const std::string& path) {
  return genostat::platform::directoryExists(path);
}

std::string GenoStatAlgoManager::generateUniqueFilename(const std::string& folder, std::string& /*hint*/) {
  return genostat::generateUniqueFilename(folder);
}

void GenoStatAlgoManager::generateParameterJSON(const GenoJobSettings* settings, std::string& out) {
  if (settings != nullptr) out = genostat::parameterJson(*settings);
}

std::string GenoStatAlgoManager::base64_encode(const std::string& data) {
  return genostat::encodeBase64(data);
}

std::string GenoStatAlgoManager::escapeJsonForCommandLine(const std::string& json) {
  return genostat::escapeQuotes(json);
}

int GenoStatAlgoManager::waitForPythonProcessToEnd() {
  return 0;
}

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

genostat::ErrorDetails GenoStatAlgoManager::readErrorDetails(const std::string& resultPath) {
  return genostat::readErrorDetails(resultPath);
}

std::string GenoStatAlgoManager::replacePlaceholders(const std::string& text,
                                                     const genostat::ErrorDetails& details) {
  return genostat::replacePlaceholders(text, details);
}

std::string GenoStatAlgoManager::getTranslatedErrorMessage(const std::string& key) {
  return getLocalizedString(key);
}
