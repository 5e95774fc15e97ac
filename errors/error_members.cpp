// The manager's members for failed analyses.
#include <string>

#include "entry/record/geno_job_settings.h"
#include "errors/error_details.h"
#include "errors/error_templates.h"
#include "jobs/geno_stat_algo_manager.h"
#include "platform/files.h"

bool GenoStatAlgoManager::handlePythonError(std::int32_t exitCode, GenoJobSettings& job) {
  if (exitCode == 0) return false;
  job.setJobStatus(JobStatus::Failed);
  job.setSampleCount(0);
  job.setVariableCount(0);
  // Unsigned, since an exit code may be any 32 bits.
  job.setMessageCode(
      static_cast<std::int32_t>(static_cast<std::uint32_t>(exitCode) + genostat::message_code::kFailureBase));
  genostat::platform::removeIfExists(job.csvFilePath());
  std::string syntax;
  preparePostJobSyntax(&job, syntax, true);
  sendEndGenomicsJobMessage(job, syntax);
  return true;
}

std::string GenoStatAlgoManager::getErrorMessageTemplate(std::int32_t exitCode) {
  const genostat::ErrorTemplate message = genostat::errorTemplate(exitCode);
  if (*message.key == '\0') return {};
  return getLocalizedString(message.key) + message.placeholder;
}

rapidjson::Document GenoStatAlgoManager::readErrorDetails(const std::string& resultPath) {
  return genostat::readErrorDetails(resultPath);
}

std::string GenoStatAlgoManager::replacePlaceholders(const std::string& text,
                                                     const rapidjson::Document& details) {
  return genostat::replacePlaceholders(text, details);
}

std::string GenoStatAlgoManager::getTranslatedErrorMessage(const std::string& key) {
  return getLocalizedString(key);
}
