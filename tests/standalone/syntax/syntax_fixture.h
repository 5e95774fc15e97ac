// A running command and a record of what was reported, in place of a session.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "standalone/syntax/command.h"

namespace genostat::standalone::test {

SourcePtr makeSource(std::string_view text);

// The one command that `text` holds.
Command scanOne(std::string_view text);

// Makes `command` the running one while it lives, and records the rendered diagnostics.
class RunningCommand {
 public:
  explicit RunningCommand(const Command& command);
  ~RunningCommand();
  RunningCommand(const RunningCommand&) = delete;
  RunningCommand& operator=(const RunningCommand&) = delete;

  std::vector<std::string> reported;
};

}  // namespace genostat::standalone::test
