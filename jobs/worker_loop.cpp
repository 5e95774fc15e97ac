// The worker thread: queued jobs, one after another, in the order of their submission.
#include <optional>

#include "entry/record/geno_job_settings.h"
#include "entry/record/texts.h"
#include "host/string_tables.h"
#include "jobs/geno_stat_algo_manager.h"
#include "platform/process.h"
#include "run/paths.h"

void GenoStatAlgoManager::processJobs() {
  loadStringTable();
  std::unique_lock lock(queueMutex_);
  while (true) {
    queueChanged_.wait(lock, [this] { return stop_ || !jobQueue_.empty(); });
    // Jobs that still wait are freed with the manager.
    if (stop_) break;
    std::unique_ptr<GenoJobSettings> job = std::move(jobQueue_.front());
    jobQueue_.pop_front();
    currentJob_ = job.get();
    lock.unlock();
    runNextJob(std::move(job));
    lock.lock();
  }
  stringTable_ = nullptr;
  ownedStringTable_.reset();
  workerRunning_ = false;
}

void GenoStatAlgoManager::loadStringTable() {
  if (ownedStringTable_) return;
  try {
    const std::optional<std::string> folder = genostat::installationFolder();
    if (!folder) return;
    auto table = std::make_unique<FacSTDictionary>(*folder);
    table->SetProcedure(genostat::texts::kProcedureName);
    table->SetGlobalStringTable(*folder);
    ownedStringTable_ = std::move(table);
    stringTable_ = ownedStringTable_.get();
  } catch (...) {
    // Texts then show as their keys.
    return;
  }
}

void GenoStatAlgoManager::runNextJob(std::unique_ptr<GenoJobSettings> job) {
  // Of a job that was cancelled in the queue, the client was informed at once.
  if (job->jobStatus() != JobStatus::Cancelled) {
    try {
      sendStartGenomicsJobMessage(*job, true);
      launchPythonProcess(job.release());
      return;
    } catch (...) {
      // A host that fails in its message loses this job, not the worker and with it the program.
    }
  }
  leaveCurrentJob();
}

void GenoStatAlgoManager::leaveCurrentJob() {
  const std::lock_guard lock(queueMutex_);
  currentJob_ = nullptr;
}
