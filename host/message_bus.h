// Host message bus: the messages of a background job to the client.
#pragma once

#include <cstdint>
#include <string>
#include <utility>

class ZorvwMsg {
 public:
  virtual ~ZorvwMsg() = default;
};

// Sent when a job enters the queue (`started` false) and when it begins to run (true).
class ZorvwMsgStartGenomicProcessing : public ZorvwMsg {
 public:
  static constexpr std::int32_t kMessageId = 1025;

  ZorvwMsgStartGenomicProcessing(std::string name, bool isStarted)
      : jobName(std::move(name)), started(isStarted) {}

  std::string jobName;
  bool started;
};

// Sent when a job has ended. `message` is command syntax for the client to run;
// it is empty for a cancelled job.
class ZorvwMsgEndGenomicProcessing : public ZorvwMsg {
 public:
  static constexpr std::int32_t kMessageId = 1026;

  ZorvwMsgEndGenomicProcessing(std::string name, std::string syntax, std::string csvPath,
                               std::int32_t workbook, std::int32_t paragraph)
      : jobName(std::move(name)),
        message(std::move(syntax)),
        csvFilePath(std::move(csvPath)),
        workbookId(workbook),
        paragraphId(paragraph) {}

  std::string jobName;
  std::string message;
  std::string csvFilePath;
  std::int32_t workbookId;
  std::int32_t paragraphId;
};
