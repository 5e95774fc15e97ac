// The manager's members for paths and for the parameter document.
#include "jobs/geno_stat_algo_manager.h"
#include "platform/files.h"
#include "run/base64.h"
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
