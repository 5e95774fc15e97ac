// What the commands /PRINT and /DELETE do for a job that has ended.
#include "entry/record/geno_job_settings.h"
#include "entry/record/texts.h"
#include "errors/error_templates.h"
#include "jobs/geno_stat_algo_manager.h"
#include "platform/files.h"
#include "results/output_tables.h"

namespace texts = genostat::texts;

void GenoStatAlgoManager::postOutputToDisplay(GenoJobSettings* settings, BpProcedure* procedure) {
  if (settings == nullptr) return;
  genostat::showOutputTables(
      *settings, procedure, [this](const std::string& key) { return getLocalizedString(key); },
      [&] { generateMessageString(*settings); });
}

void GenoStatAlgoManager::generateMessageString(GenoJobSettings& settings) {
  const std::int32_t code = settings.messageCode();
  if (code == genostat::message_code::kResults) {
    settings.setMessageText(getLocalizedString(texts::kValid) + std::to_string(settings.sampleCount()) + " " +
                            getLocalizedString(texts::kFilesDetected));
  } else if (code == genostat::message_code::kNoResults) {
    settings.setMessageText(getLocalizedString(texts::kError) + getLocalizedString(texts::kGenericError));
  } else {
    const std::uint32_t exitCode = static_cast<std::uint32_t>(code) - genostat::message_code::kFailureBase;
    settings.setMessageText(getErrorMessageTemplate(static_cast<std::int32_t>(exitCode)));
  }
}

std::string GenoStatAlgoManager::getErrorMessageTemplate(std::int32_t exitCode) {
  const genostat::ErrorTemplate message = genostat::errorTemplate(exitCode);
  if (*message.key == '\0') return {};
  return getLocalizedString(message.key) + message.placeholder;
}

void GenoStatAlgoManager::cleanUpCSVFileCreated(GenoJobSettings* settings) {
  // A failure is not reported.
  if (settings != nullptr) genostat::platform::removeIfExists(settings->csvFilePath());
}
