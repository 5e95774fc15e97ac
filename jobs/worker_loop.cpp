// The worker thread: queued jobs, one after another, in the order of their submission.
#include <memory>

#include "entry/record/geno_job_settings.h"
#include "entry/record/texts.h"
#include "host/string_tables.h"
#include "jobs/geno_stat_algo_manager.h"
#include "run/installation_folder.h"

void GenoStatAlgoManager::processJobs() {
  loadStringTable();
  std::unique_lock lock(queueMutex_);
  while (true) {
    queueChanged_.wait(lock, [this] { return stop_ || !jobQueue_.empty(); });
    // Jobs that still wait are the destructor's to free.
    if (stop_) break;
    GenoJobSettings* job = jobQueue_.front();
    currentJob_ = job;
    jobQueue_.pop_front();
    lock.unlock();
    runNextJob(job);
    lock.lock();
  }
  delete stringTable_.exchange(nullptr);
  workerRunning_ = false;
}

void GenoStatAlgoManager::runNextJob(GenoJobSettings* job) {
  if (job->jobStatus() == JobStatus::Cancelled) {
    // The client was told when the job was cancelled.
    retireJob(job);
    return;
  }
  try {
    sendStartGenomicsJobMessage(*job, true);
  } catch (...) {
    // A host that fails in its message loses this job, not the worker and with it the program.
    retireJob(job);
    return;
  }
  launchPythonProcess(job);
}

void GenoStatAlgoManager::loadStringTable() {
  if (stringTable_.load() != nullptr) return;
  try {
    const std::string folder = genostat::installationFolder();
    auto table = std::make_unique<FacSTDictionary>(folder);
    table->SetProcedure(genostat::texts::kProcedureName);
    table->SetGlobalStringTable(folder);
    stringTable_.store(table.release());
  } catch (...) {
    // Texts then show as their keys.
    return;
  }
}

void GenoStatAlgoManager::retireJob(GenoJobSettings* job) {
  const std::unique_ptr<GenoJobSettings> owned(job);
  const std::lock_guard lock(queueMutex_);
  if (currentJob_ == job) currentJob_ = nullptr;
}
