// The one object that owns the module's jobs: their queue, the worker thread that runs them one
// at a time, and the analysis process of the job that runs.
//
// The public methods are exported for the host's client. Members are defined in the room of the
// subsystem they belong to: jobs/, run/, results/ and errors/.
#pragma once

#include <rapidjson/fwd.h>

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "platform/export.h"

class BpProcedure;
class FacSTDictionary;
class GenoJobSettings;

namespace genostat::platform {
class ChildProcess;
}

class GenoStatAlgoManager {
 public:
  // Submissions are refused by the command while so many jobs wait; the running one does not count.
  static constexpr std::size_t kMaxQueuedJobs = 10;

  // The module's manager, created on first use; null when there is no memory for it. Any thread.
  GENOSTAT_EXPORT static GenoStatAlgoManager* getManagerInstance();

  // Waits for the running job, frees the queued ones without a word to the client. On the worker's own
  // thread (in a message of a run) it cannot wait and ends the program with a system error. The module
  // never deletes its manager; a host that does must not call it again.
  GENOSTAT_EXPORT ~GenoStatAlgoManager();
  GenoStatAlgoManager(const GenoStatAlgoManager&) = delete;
  GenoStatAlgoManager& operator=(const GenoStatAlgoManager&) = delete;

  // Takes ownership of the job, tells the client, and starts a worker if none runs. Throws
  // std::system_error when no thread can be had; the job then stays queued for the next worker.
  // Null is ignored.
  GENOSTAT_EXPORT void addJobToQueue(GenoJobSettings* job);

  // True when kMaxQueuedJobs or more jobs wait.
  GENOSTAT_EXPORT bool isQueueFull();

  // True for the running job's name, whatever its status, and for the names of waiting jobs that
  // are not cancelled. Exact comparison.
  GENOSTAT_EXPORT bool isJobPendingOrRunning(const std::string& name);

  // Cancels the running or the first queued job of that name and tells the client; the running
  // job's process tree is ended. True when there was such a job. Must not be called while the
  // adapter delivers a message that this manager sent under its lock (see docs/host-integration.md).
  GENOSTAT_EXPORT bool cancelJob(const std::string& name);

  // Cancels and drops every queued job and tells the client. The running job goes on.
  GENOSTAT_EXPORT void cancellAllJobsPending();

  // A name that no dataset, queued or running job bears; it is not reserved. Empty without a
  // manager. Throws GenomicParserException when all automatic names are taken. Command thread.
  GENOSTAT_EXPORT static std::string generateUniqueJobName();

  // Shows the tables "Summary" and "Details" of a finished job. Command thread.
  GENOSTAT_EXPORT void postOutputToDisplay(GenoJobSettings* settings, BpProcedure* procedure);

  // Removes the result file that the record names. A missing file and a folder are left alone.
  GENOSTAT_EXPORT void cleanUpCSVFileCreated(GenoJobSettings* settings);

 private:
  // Tests make managers of their own, since there is only one instance.
  friend class GenoStatAlgoManagerTestPeer;

  GenoStatAlgoManager();

  // The text for a key in the user's language; the key itself while there is no string table.
  std::string getLocalizedString(const std::string& key) const;

  // jobs: the worker and the client's messages.
  void processJobs();
  void runNextJob(GenoJobSettings* job);
  void loadStringTable();
  void joinWorker();
  // Takes the job out of the current-job member, if it is there, and frees it.
  void retireJob(GenoJobSettings* job);
  void sendStartGenomicsJobMessage(const GenoJobSettings& job, bool started);
  void sendEndGenomicsJobMessage(const GenoJobSettings& job, const std::string& message);

  // run: one job, from its record to its end message.
  // Owns and frees the record. False when no process could be started.
  bool launchPythonProcess(GenoJobSettings* settings);
  bool runJob(GenoJobSettings& settings);
  // Makes the process the one that a cancellation ends.
  void adoptProcess(std::unique_ptr<genostat::platform::ChildProcess> process);
  // Whether the job was cancelled, decided once; a success that was not becomes Completed.
  bool settleStatus(GenoJobSettings& settings, std::uint32_t exitCode);
  void reportResults(GenoJobSettings& settings);
  bool killProcess(int pid);
  int waitForPythonProcessToEnd();
  static std::string joinPath(const std::string& base, const std::string& name);
  static std::string getFolderPath(const std::string& path);
  static bool fileExists(const std::string& path);
  static bool directoryExists(const std::string& path);
  static std::string generateUniqueFilename(const std::string& folder, std::string& hint);
  static void generateParameterJSON(const GenoJobSettings* settings, std::string& out);
  static std::string base64_encode(const std::string& data);
  std::string escapeJsonForCommandLine(const std::string& json);

  // results: counts, generated syntax, the summary's message.
  bool parseCSVForCounts(const char* path, std::int32_t& samples, std::int32_t& variables);
  static void preparePostJobSyntax(const GenoJobSettings* settings, std::string& out, bool failed);
  void generateMessageString(GenoJobSettings& settings);

  // errors: what a failed analysis leaves behind.
  // False for exit code 0; otherwise marks the job failed and tells the client.
  bool handlePythonError(std::int32_t exitCode, GenoJobSettings& job);
  std::string getErrorMessageTemplate(std::int32_t exitCode);
  rapidjson::Document readErrorDetails(const std::string& resultPath);
  std::string replacePlaceholders(const std::string& text, const rapidjson::Document& details);
  std::string getTranslatedErrorMessage(const std::string& key);

  static std::once_flag m_initFlag;
  static GenoStatAlgoManager* m_pAlgoMgr;

  std::list<GenoJobSettings*> jobQueue_;  // front: oldest; owns its jobs; guarded by queueMutex_
  std::mutex queueMutex_;
  std::condition_variable queueChanged_;     // with queueMutex_
  std::thread worker_;                       // guarded by queueMutex_
  bool stop_ = false;                        // guarded by queueMutex_; set by the destructor only
  bool workerRunning_ = false;               // guarded by queueMutex_
  std::atomic<std::int32_t> processId_{-1};  // of the last analysis process started; never reset
  GenoJobSettings* currentJob_ = nullptr;    // guarded by queueMutex_; owned by the worker
  // Configured by the worker before it is stored; deleted when the worker ends, which is when
  // the manager goes.
  std::atomic<FacSTDictionary*> stringTable_{nullptr};
  // Keeps processId_ from being given to a stranger; guarded by queueMutex_.
  std::unique_ptr<genostat::platform::ChildProcess> lastProcess_;
};

// The manager, for the host's client.
extern "C" GENOSTAT_EXPORT GenoStatAlgoManager* getGenoManagerInstance();

// Cancels a job by its NUL-terminated name; false for a null manager or name. Any thread but one
// on which the adapter delivers a message of this module.
extern "C" GENOSTAT_EXPORT bool cancelGenoJob(GenoStatAlgoManager* manager, const char* jobName);
