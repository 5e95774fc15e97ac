// What a background job reports to the client, copied out of the module's message.
#pragma once

#include <string>

namespace genostat::standalone {

struct ClientMessage {
  enum class Kind { Queued, Running, Ended };

  Kind kind = Kind::Queued;
  std::string jobName;
  // Ended only.
  std::string syntax;       // empty for a cancelled job
  std::string csvFilePath;  // in the system's narrow encoding; empty when none was chosen
  int workbookId = -1;
  int paragraphId = -1;
  std::string failure;  // why the analysis failed; empty for a job with results or a cancelled one
};

}  // namespace genostat::standalone
