// The record of one GENOSTAT command and, when the command submits one, of one job.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

enum class AdapterType : std::uint32_t { NONE = 0, ILLUMINA = 1, NEXTERA = 2, CUSTOM = 3 };

enum class JobStatus : std::uint32_t { Pending = 0, Running = 1, Completed = 2, Cancelled = 3, Failed = 4 };

// What the entry does with the record: queue a job, show a finished job's summary, or remove
// a job's result file.
enum class JobMode : std::uint32_t { SUBMIT = 0, PRINT = 1, DELETE = 2 };

enum class RegressionMethod : std::uint32_t { ENTER = 0, STEPWISE = 1, BACKWARD = 2, FORWARD = 3 };

// The message code of an ended job, from which the summary makes its message.
namespace genostat::message_code {
inline constexpr std::int32_t kResults = 100;
inline constexpr std::int32_t kNoResults = 101;     // the analysis succeeded but wrote nothing
inline constexpr std::uint32_t kFailureBase = 200;  // plus the exit code of a failed analysis
}  // namespace genostat::message_code

// The adapter that a keyword names, by exact comparison; NONE for any other word.
AdapterType adapterTypeFromKeyword(const std::string& keyword);
// The keyword of an adapter; "NONE" for a value outside the enumeration.
const char* adapterKeyword(AdapterType type);
// The same two for regression methods, with ENTER for anything else.
RegressionMethod regressionMethodFromKeyword(const std::string& keyword);
const char* regressionKeyword(RegressionMethod method);

struct DescriptivesOptions {
  std::vector<std::string> variables;
  bool skewness = false;
  bool kurtosis = false;
};

struct FrequenciesOptions {
  std::vector<std::string> variables;
  std::int32_t ntiles = 0;  // 0: none requested
  std::vector<double> percentiles;
  bool histogram = false;
  bool quartiles = false;
};

struct CorrelationsOptions {
  std::vector<std::string> variables;
  bool pearson = true;
  bool spearman = false;
  bool kendall = false;
  bool twoTail = false;
  bool oneTail = false;
};

struct RegressionOptions {
  std::string dependent;
  std::vector<std::string> independent;
  RegressionMethod method = RegressionMethod::ENTER;
  std::string confidenceInterval;  // the level in percent, with six decimals; empty: not given
  bool reservedFlag = false;       // no command sets it
  bool normalProbabilityPlot = false;
};

// Text is bytes, UTF-8 as the host parser delivers it. Owned by the entry, then by the manager's
// queue, then by the run of the job. Once a job is queued, its status may be read and set by
// any thread; its result path is assigned under the manager's queue mutex; the rest belongs
// to the thread that runs the job.
class GenoJobSettings {
 public:
  // Takes the host's metadata of the running command and clears them there.
  GenoJobSettings();
  ~GenoJobSettings() = default;
  GenoJobSettings(const GenoJobSettings&) = delete;
  GenoJobSettings& operator=(const GenoJobSettings&) = delete;

  const std::vector<std::string>& fastqFiles() const { return fastqFiles_; }
  void setFastqFiles(std::vector<std::string> files) { fastqFiles_ = std::move(files); }

  const std::string& fastqFolder() const { return fastqFolder_; }
  void setFastqFolder(std::string folder) { fastqFolder_ = std::move(folder); }

  AdapterType adapterType() const { return adapterType_; }
  void setAdapterType(AdapterType type) { adapterType_ = type; }

  const std::string& customAdapterSequence() const { return customAdapterSequence_; }
  // Makes the adapter CUSTOM as well.
  void setCustomAdapterSequence(std::string sequence);

  // The options of one analysis: null when it was not requested, unless `create` asks for
  // them with their defaults.
  DescriptivesOptions* descriptives(bool create);
  FrequenciesOptions* frequencies(bool create);
  CorrelationsOptions* correlations(bool create);
  RegressionOptions* regression(bool create);
  const DescriptivesOptions* descriptives() const { return descriptives_.get(); }
  const FrequenciesOptions* frequencies() const { return frequencies_.get(); }
  const CorrelationsOptions* correlations() const { return correlations_.get(); }
  const RegressionOptions* regression() const { return regression_.get(); }

  const std::string& jobName() const { return jobName_; }
  void setJobName(std::string name) { jobName_ = std::move(name); }

  // Two lists that no command fills.
  const std::vector<std::string>& listA() const { return listA_; }
  void setListA(std::vector<std::string> list) { listA_ = std::move(list); }
  const std::vector<std::string>& listB() const { return listB_; }
  void setListB(std::vector<std::string> list) { listB_ = std::move(list); }

  JobStatus jobStatus() const { return jobStatus_.load(); }
  void setJobStatus(JobStatus status) { jobStatus_.store(status); }
  // Sets `to` if the status is `from`; true when it was.
  bool replaceJobStatus(JobStatus from, JobStatus to) { return jobStatus_.compare_exchange_strong(from, to); }

  const std::string& csvFilePath() const { return csvFilePath_; }
  void setCsvFilePath(std::string path) { csvFilePath_ = std::move(path); }

  std::int32_t sampleCount() const { return sampleCount_; }
  void setSampleCount(std::int32_t count) { sampleCount_ = count; }

  std::int32_t variableCount() const { return variableCount_; }
  void setVariableCount(std::int32_t count) { variableCount_ = count; }

  const std::string& messageText() const { return messageText_; }
  void setMessageText(std::string text) { messageText_ = std::move(text); }

  // -1 when the host gave no such identifier.
  std::int32_t workbookId() const { return workbookId_; }
  void setWorkbookId(std::int32_t id) { workbookId_ = id; }
  std::int32_t paragraphId() const { return paragraphId_; }
  void setParagraphId(std::int32_t id) { paragraphId_ = id; }

  const std::string& metadataJson() const { return metadataJson_; }
  void setMetadataJson(std::string json) { metadataJson_ = std::move(json); }

  // See genostat::message_code.
  std::int32_t messageCode() const { return messageCode_; }
  void setMessageCode(std::int32_t code) { messageCode_ = code; }

  JobMode mode() const { return mode_; }
  void setMode(JobMode mode) { mode_ = mode; }

 private:
  void readMetadata();

  std::vector<std::string> fastqFiles_;
  std::string fastqFolder_;
  AdapterType adapterType_ = AdapterType::NONE;
  std::string customAdapterSequence_;
  std::unique_ptr<DescriptivesOptions> descriptives_;
  std::unique_ptr<FrequenciesOptions> frequencies_;
  std::unique_ptr<CorrelationsOptions> correlations_;
  std::unique_ptr<RegressionOptions> regression_;
  std::string jobName_;
  std::vector<std::string> listA_;
  std::vector<std::string> listB_;
  std::atomic<JobStatus> jobStatus_{JobStatus::Pending};
  std::string csvFilePath_;
  std::int32_t sampleCount_ = -1;
  std::int32_t variableCount_ = -1;
  std::string messageText_ = "Default";
  std::int32_t workbookId_ = -1;
  std::int32_t paragraphId_ = -1;
  std::string metadataJson_;
  std::int32_t messageCode_ = 0;
  JobMode mode_ = JobMode::SUBMIT;
};
