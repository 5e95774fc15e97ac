// One job from start to end, on the worker thread.
#include <cstdio>
#include <utility>

#include "entry/record/geno_job_settings.h"
#include "entry/record/texts.h"
#include "host/path_service.h"
#include "jobs/geno_stat_algo_manager.h"
#include "platform/files.h"
#include "platform/process.h"
#include "run/installation_folder.h"
#include "run/launch_command.h"
#include "run/paths.h"

namespace {

constexpr char kLauncherName[] = "statisticspython3";
// The first two columns of a result file name the sample and the adapter.
constexpr std::int32_t kIdentifyingColumns = 2;

}  // namespace

bool GenoStatAlgoManager::launchPythonProcess(GenoJobSettings* settings) {
  if (settings == nullptr) return false;
  bool started = false;
  try {
    started = runJob(*settings);
  } catch (...) {
    started = false;
  }
  // Only now: a cancelling thread finds the job, and its name stays taken, until its end
  // message was sent.
  retireJob(settings);
  return started;
}

bool GenoStatAlgoManager::runJob(GenoJobSettings& settings) {
  // A cancellation that came first is not overwritten.
  settings.replaceJobStatus(JobStatus::Pending, JobStatus::Running);

  const char* temporaryFolder = GetZorvTempPath();
  std::string hint = settings.jobName();
  std::string csvPath = generateUniqueFilename(temporaryFolder != nullptr ? temporaryFolder : "", hint);
  if (csvPath.empty()) return false;
  {
    const std::lock_guard lock(queueMutex_);
    settings.setCsvFilePath(std::move(csvPath));
  }

  const std::string base = genostat::installationFolder();
  std::string json;
  generateParameterJSON(&settings, json);
  std::unique_ptr<genostat::platform::ChildProcess> started = genostat::platform::ChildProcess::start(
      genostat::launchCommand(base + kLauncherName, genostat::scriptPath(base), base64_encode(json)));
  if (!started) return false;
  genostat::platform::ChildProcess& process = *started;
  adoptProcess(std::move(started));

  const std::uint32_t exitCode = process.wait();
  // The same id as before, unless the system has let go of it.
  processId_ = process.id();
  if (settleStatus(settings, exitCode)) {
    if (!genostat::platform::removeIfExists(settings.csvFilePath()))
      std::perror(genostat::texts::kFileDeletionFailed);
  } else if (!handlePythonError(static_cast<std::int32_t>(exitCode), settings)) {
    reportResults(settings);
  }
  return true;
}

void GenoStatAlgoManager::adoptProcess(std::unique_ptr<genostat::platform::ChildProcess> process) {
  {
    const std::lock_guard lock(queueMutex_);
    processId_ = process->id();
    lastProcess_.swap(process);
  }
  // The process before it is let go here, when its id can no longer be used.
}

bool GenoStatAlgoManager::settleStatus(GenoJobSettings& settings, std::uint32_t exitCode) {
  const std::lock_guard lock(queueMutex_);
  if (settings.jobStatus() == JobStatus::Cancelled) return true;
  if (exitCode == 0) settings.setJobStatus(JobStatus::Completed);
  return false;
}

void GenoStatAlgoManager::reportResults(GenoJobSettings& settings) {
  const bool hasResults = fileExists(settings.csvFilePath());
  if (hasResults) {
    std::int32_t samples = 0;
    std::int32_t variables = 0;
    parseCSVForCounts(settings.csvFilePath().c_str(), samples, variables);
    if (samples > 0) {
      settings.setSampleCount(samples);
      settings.setVariableCount(variables - kIdentifyingColumns);
      settings.setMessageCode(genostat::message_code::kResults);
    }
  } else {
    settings.setSampleCount(0);
    settings.setVariableCount(0);
    settings.setMessageCode(genostat::message_code::kNoResults);
  }
  std::string syntax;
  preparePostJobSyntax(&settings, syntax, !hasResults);
  sendEndGenomicsJobMessage(settings, syntax);
}
