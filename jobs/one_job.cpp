// One job from start to end, on the worker thread: launch, wait, settle, then failure or results, and the end
// message.
#include <cstdio>
#include <utility>

#include "entry/record/geno_job_settings.h"
#include "entry/record/texts.h"
#include "host/path_service.h"
#include "jobs/geno_stat_algo_manager.h"
#include "platform/files.h"
#include "platform/process.h"
#include "results/csv_counts.h"
#include "results/post_job_syntax.h"
#include "run/launch_command.h"
#include "run/parameter_json.h"
#include "run/paths.h"

namespace platform = genostat::platform;

namespace {

constexpr char kLauncherName[] = "statisticspython3";
// The first two columns of a result file name the sample and the adapter.
constexpr std::int32_t kIdentifyingColumns = 2;

}  // namespace

bool GenoStatAlgoManager::launchPythonProcess(GenoJobSettings* settings) {
  if (settings == nullptr) return false;
  const std::unique_ptr<GenoJobSettings> job(settings);
  bool started = false;
  try {
    started = runJob(*job);
  } catch (...) {
    started = false;
  }
  // Only now: a cancelling thread finds the job, and its name stays taken, until its end
  // message was sent.
  leaveCurrentJob();
  return started;
}

bool GenoStatAlgoManager::runJob(GenoJobSettings& job) {
  // A cancellation that came first is not overwritten.
  job.replaceJobStatus(JobStatus::Pending, JobStatus::Running);

  const char* temporaryFolder = GetZorvTempPath();
  std::string csvPath = genostat::generateUniqueFilename(temporaryFolder != nullptr ? temporaryFolder : "");
  if (csvPath.empty()) return false;
  {
    const std::lock_guard lock(queueMutex_);
    job.setCsvFilePath(std::move(csvPath));
  }

  const std::string base = genostat::installationFolder().value_or("");
  const std::string payload = genostat::encodeBase64(genostat::parameterJson(job));
  std::unique_ptr<platform::ChildProcess> process = platform::ChildProcess::start(
      genostat::launchCommand(base + kLauncherName, genostat::scriptPath(base), payload));
  if (!process) return false;

  const std::uint32_t exitCode = waitForEnd(std::move(process));
  if (settleStatus(job, exitCode)) {
    if (!platform::removeIfExists(job.csvFilePath())) std::perror(genostat::texts::kFileDeletionFailed);
  } else if (!handlePythonError(static_cast<std::int32_t>(exitCode), job)) {
    reportResults(job);
  }
  return true;
}

std::uint32_t GenoStatAlgoManager::waitForEnd(std::unique_ptr<platform::ChildProcess> started) {
  platform::ChildProcess& process = *started;
  {
    const std::lock_guard lock(queueMutex_);
    processId_ = process.id();
    lastProcess_.swap(started);
  }
  // The process before this one: its id can no longer be used.
  started.reset();
  const std::uint32_t exitCode = process.wait();
  // The same id as before, unless it was lost with the exit code.
  processId_ = process.id();
  return exitCode;
}

bool GenoStatAlgoManager::settleStatus(GenoJobSettings& job, std::uint32_t exitCode) {
  const std::lock_guard lock(queueMutex_);
  if (job.jobStatus() == JobStatus::Cancelled) return true;
  if (exitCode == 0) job.setJobStatus(JobStatus::Completed);
  return false;
}

bool GenoStatAlgoManager::handlePythonError(std::int32_t exitCode, GenoJobSettings& job) {
  if (exitCode == 0) return false;
  job.setJobStatus(JobStatus::Failed);
  job.setSampleCount(0);
  job.setVariableCount(0);
  // Unsigned, since an exit code may be any 32 bits.
  job.setMessageCode(
      static_cast<std::int32_t>(static_cast<std::uint32_t>(exitCode) + genostat::message_code::kFailureBase));
  platform::removeIfExists(job.csvFilePath());
  sendEndGenomicsJobMessage(job, genostat::postJobSyntax(job, true));
  return true;
}

void GenoStatAlgoManager::reportResults(GenoJobSettings& job) {
  // A pipe or a device could be waited for or read for ever.
  const bool hasResults = platform::regularFileExists(job.csvFilePath());
  if (hasResults) {
    const auto counts = genostat::countCsv(job.csvFilePath().c_str());
    if (counts && counts->samples > 0) {
      job.setSampleCount(counts->samples);
      job.setVariableCount(counts->variables - kIdentifyingColumns);
      job.setMessageCode(genostat::message_code::kResults);
    }
  } else {
    job.setSampleCount(0);
    job.setVariableCount(0);
    job.setMessageCode(genostat::message_code::kNoResults);
  }
  sendEndGenomicsJobMessage(job, genostat::postJobSyntax(job, !hasResults));
}
