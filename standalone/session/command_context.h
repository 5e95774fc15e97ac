// What a command of the standalone host works with.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/syntax/command.h"

namespace genostat::standalone {

class DatasetStore;
class OutputDocument;

// What PRESERVE keeps and RESTORE brings back.
struct SettingValues {
  char decimal = '.';  // the decimal sign of numbers in data files; output always has a dot
};

// The settings in force, and those preserved, the latest last.
struct Settings : SettingValues {
  std::vector<SettingValues> preserved;
};

// Borrowed for the run of one command, on the command thread.
struct CommandContext {
  const Command& command;
  DatasetStore& datasets;
  OutputDocument& output;
  Settings& settings;
  // Shows a warning; the command goes on and counts as successful.
  std::function<void(const Diagnostic&)> warn;
};

// One command of the host. `name` is upper case, its words separated by one blank ("GET DATA").
// `run` finds the tokens from the command's first word on and throws CommandError to fail.
struct CommandHandler {
  std::string_view name;
  void (*run)(CommandContext& context);
};

}  // namespace genostat::standalone
