// The message stream as a file: one JSON object per line, each written out at once.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>

#include "standalone/services/client_message.h"

namespace genostat::standalone {

// Not thread-safe.
class EventLog {
 public:
  // Opens the file for appending; failed() says so when that is not possible.
  explicit EventLog(const std::filesystem::path& file);

  void write(const ClientMessage& message);
  // True once anything could not be written.
  bool failed() const { return !stream_; }

 private:
  std::ofstream stream_;
};

// {"id":1025,"time":"2026-11-21T12:34:56.789Z","jobName":"a","started":false}, without a line feed.
// `time` is UTC.
std::string eventLine(const ClientMessage& message, const std::string& time);

}  // namespace genostat::standalone
