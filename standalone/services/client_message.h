// What a background job reports to the client, copied out of the module's message.
#pragma once

#include <chrono>
#include <cstddef>
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
  // Queued only: about how many characters its launcher is to get.
  std::size_t parameterSize = 0;
};

// A message as a line of the event file, without its line feed; its time is UTC:
// {"id":1025,"time":"2026-11-21T12:34:56.789Z","jobName":"a","started":false}
std::string eventLine(const ClientMessage& message, std::chrono::system_clock::time_point time);

}  // namespace genostat::standalone
