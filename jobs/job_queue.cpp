// Submitting, finding and cancelling jobs. Every operation holds the queue mutex throughout, the
// messages to the client included: the client sees them in the order in which things happened.
#include <algorithm>
#include <exception>
#include <utility>

#include "entry/record/geno_job_settings.h"
#include "jobs/geno_stat_algo_manager.h"
#include "platform/process.h"

void GenoStatAlgoManager::addJobToQueue(GenoJobSettings* job) {
  if (job == nullptr) return;
  std::unique_ptr<GenoJobSettings> owned(job);
  const std::lock_guard lock(queueMutex_);
  jobQueue_.push_back(std::move(owned));
  job->setJobStatus(JobStatus::Pending);
  try {
    sendStartGenomicsJobMessage(*job, false);
  } catch (...) {
    // Of a job that was not announced, the client would never learn.
    jobQueue_.pop_back();
    throw;
  }
  if (!workerRunning_) {
    joinWorker();
    workerRunning_ = true;
    try {
      worker_ = std::thread(&GenoStatAlgoManager::processJobs, this);
    } catch (...) {
      // The job stays queued; the next submission tries again.
      workerRunning_ = false;
      throw;
    }
  }
  queueChanged_.notify_one();
}

bool GenoStatAlgoManager::isQueueFull() {
  const std::lock_guard lock(queueMutex_);
  return jobQueue_.size() >= kMaxQueuedJobs;
}

bool GenoStatAlgoManager::isJobPendingOrRunning(const std::string& name) {
  const std::lock_guard lock(queueMutex_);
  if (currentJob_ != nullptr && currentJob_->jobName() == name) return true;
  return std::any_of(jobQueue_.begin(), jobQueue_.end(), [&name](const auto& job) {
    return job->jobStatus() < JobStatus::Completed && job->jobName() == name;
  });
}

bool GenoStatAlgoManager::cancelJob(const std::string& name) {
  const std::lock_guard lock(queueMutex_);
  if (currentJob_ != nullptr && currentJob_->jobName() == name) {
    currentJob_->setJobStatus(JobStatus::Cancelled);
    // The stored id may still be the last job's; its process is kept from being mistaken.
    killProcess(processId_.load());
    sendEndGenomicsJobMessage(*currentJob_, "");
    return true;
  }
  const auto found = std::find_if(jobQueue_.begin(), jobQueue_.end(),
                                  [&name](const auto& job) { return job->jobName() == name; });
  if (found == jobQueue_.end()) return false;
  // The job stays in the queue; the worker drops it when its turn comes.
  (*found)->replaceJobStatus(JobStatus::Pending, JobStatus::Cancelled);
  sendEndGenomicsJobMessage(**found, "");
  if (jobQueue_.size() == 1 && workerRunning_ && currentJob_ == nullptr) queueChanged_.notify_all();
  return true;
}

void GenoStatAlgoManager::cancellAllJobsPending() {
  const std::lock_guard lock(queueMutex_);
  for (const auto& job : jobQueue_) {
    if (job->replaceJobStatus(JobStatus::Pending, JobStatus::Cancelled)) sendEndGenomicsJobMessage(*job, "");
  }
  jobQueue_.clear();
  if (currentJob_ == nullptr && workerRunning_) queueChanged_.notify_all();
}

bool GenoStatAlgoManager::killProcess(int pid) {
  try {
    return genostat::platform::killProcessTree(pid);
  } catch (const std::exception&) {
    // Out of memory: the client must still be informed of the cancellation.
    return false;
  }
}

bool cancelGenoJob(GenoStatAlgoManager* manager, const char* jobName) {
  return manager != nullptr && jobName != nullptr && manager->cancelJob(jobName);
}
