// The one object that owns the module's jobs: their queue, the worker thread that runs them one
// at a time, and the analysis process of the job that runs.
//
// The public methods are exported for the host's client, which needs no other header of the module.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

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

  // The module's manager, created on first use; null when there is no memory for it, and for good once a host
  // has deleted it. Any thread.
  GENOSTAT_EXPORT static GenoStatAlgoManager* getManagerInstance();

  // Waits for the running job and frees the queued ones without a message to the client. On the worker's
  // own thread (in a message of a run) it cannot wait and ends the program with a system error. The module
  // never deletes its manager. After a host has done so, commands do nothing; its address is not to be used
  // again.
  GENOSTAT_EXPORT ~GenoStatAlgoManager();
  GenoStatAlgoManager(const GenoStatAlgoManager&) = delete;
  GenoStatAlgoManager& operator=(const GenoStatAlgoManager&) = delete;

  // Takes ownership of the job, informs the client, and starts a worker if none runs. What the client's
  // message throws is passed on; the job is then freed. Throws std::system_error when no thread can be had;
  // the job then stays queued for the next worker. Null is ignored.
  GENOSTAT_EXPORT void addJobToQueue(GenoJobSettings* job);

  // True when kMaxQueuedJobs or more jobs wait.
  GENOSTAT_EXPORT bool isQueueFull();

  // True for the running job's name, whatever its status, and for the names of waiting jobs that
  // are not cancelled. Exact comparison.
  GENOSTAT_EXPORT bool isJobPendingOrRunning(const std::string& name);

  // Cancels the running or the first queued job of that name and informs the client; the running
  // job's process tree is ended. True when there was such a job. Must not be called while the
  // adapter delivers a message that this manager sent under its lock (see docs/host-integration.md).
  GENOSTAT_EXPORT bool cancelJob(const std::string& name);

  // Cancels and drops every queued job and informs the client. The running job goes on.
  GENOSTAT_EXPORT void cancellAllJobsPending();

  // A name that no dataset, queued or running job bears; it is not reserved. Empty without a
  // manager. Throws GenomicParserException when all automatic names are taken. Command thread.
  GENOSTAT_EXPORT static std::string generateUniqueJobName();

  // Shows the tables "Summary" and "Details" of an ended job. Command thread.
  GENOSTAT_EXPORT void postOutputToDisplay(GenoJobSettings* settings, BpProcedure* procedure);

  // Removes the result file that the record names. A missing file and a folder are left alone.
  GENOSTAT_EXPORT void cleanUpCSVFileCreated(GenoJobSettings* settings);

 private:
  // Tests make managers of their own, since there is only one instance.
  friend class GenoStatAlgoManagerTestPeer;

  GenoStatAlgoManager();

  // The text for a key in the user's language; the key itself while there is no string table.
  std::string getLocalizedString(const std::string& key) const;

  // The worker thread: worker_loop.cpp.
  void processJobs();
  void loadStringTable();
  void runNextJob(std::unique_ptr<GenoJobSettings> job);
  // From here on no other thread reaches the job's record, which may be freed.
  void leaveCurrentJob();
  void joinWorker();

  // Messages to the client; none is sent without an adapter: client_messages.cpp.
  void sendStartGenomicsJobMessage(const GenoJobSettings& job, bool started);
  void sendEndGenomicsJobMessage(const GenoJobSettings& job, const std::string& message);

  // One job in order, on the worker thread: one_job.cpp.
  // Owns and frees the record. False when no process could be started.
  bool launchPythonProcess(GenoJobSettings* settings);
  bool runJob(GenoJobSettings& job);
  // Makes the process the one that a cancellation ends; its exit code when it has ended.
  std::uint32_t waitForEnd(std::unique_ptr<genostat::platform::ChildProcess> started);
  // Whether the job was cancelled, decided once; a success that was not becomes Completed.
  bool settleStatus(GenoJobSettings& job, std::uint32_t exitCode);
  // False for exit code 0; otherwise marks the job failed and sends its end message.
  bool handlePythonError(std::int32_t exitCode, GenoJobSettings& job);
  void reportResults(GenoJobSettings& job);

  // Ends a process with all its descendants; true when the process itself was ended.
  bool killProcess(int pid);

  // The message of an ended job, as its message code says: ended_job.cpp.
  void generateMessageString(GenoJobSettings& settings);
  std::string getErrorMessageTemplate(std::int32_t exitCode);

  // Operations that belong to the manager's interface although the module itself does not call them: it
  // uses the units in platform/, run/, results/ and errors/ that they stand for (interface_members.cpp).
  static std::string joinPath(const std::string& base, const std::string& name);
  static std::string getFolderPath(const std::string& path);
  static bool fileExists(const std::string& path);
  static bool directoryExists(const std::string& path);
  static std::string generateUniqueFilename(const std::string& folder, std::string& hint);
  static void generateParameterJSON(const GenoJobSettings* settings, std::string& out);
  static std::string base64_encode(const std::string& data);
  std::string escapeJsonForCommandLine(const std::string& json);
  int waitForPythonProcessToEnd();
  bool parseCSVForCounts(const char* path, std::int32_t& samples, std::int32_t& variables);
  static void preparePostJobSyntax(const GenoJobSettings* settings, std::string& out, bool failed);
  std::vector<std::pair<std::string, std::string>> readErrorDetails(const std::string& resultPath);
  std::string replacePlaceholders(const std::string& text,
                                  const std::vector<std::pair<std::string, std::string>>& details);
  std::string getTranslatedErrorMessage(const std::string& key);

  static std::once_flag m_initFlag;
  static std::atomic<GenoStatAlgoManager*> m_pAlgoMgr;

  std::list<std::unique_ptr<GenoJobSettings>> jobQueue_;  // front: oldest; guarded by queueMutex_
  std::mutex queueMutex_;
  std::condition_variable queueChanged_;     // with queueMutex_
  std::thread worker_;                       // guarded by queueMutex_
  bool stop_ = false;                        // guarded by queueMutex_; set by the destructor only
  bool workerRunning_ = false;               // guarded by queueMutex_
  std::atomic<std::int32_t> processId_{-1};  // of the last analysis process started; never reset
  GenoJobSettings* currentJob_ = nullptr;    // guarded by queueMutex_; owned by the worker
  // Configured and owned by the worker; readers take it from stringTable_, which is set when it is whole.
  std::unique_ptr<const FacSTDictionary> ownedStringTable_;
  std::atomic<const FacSTDictionary*> stringTable_{nullptr};
  // Keeps processId_ from being given to another process; guarded by queueMutex_.
  std::unique_ptr<genostat::platform::ChildProcess> lastProcess_;
};

// The manager, for the host's client.
extern "C" GENOSTAT_EXPORT GenoStatAlgoManager* getGenoManagerInstance();

// Cancels a job by its NUL-terminated name; false for a null manager or name. Any thread but one
// on which the adapter delivers a message of this module.
extern "C" GENOSTAT_EXPORT bool cancelGenoJob(GenoStatAlgoManager* manager, const char* jobName);
