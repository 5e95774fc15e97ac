// The program's command line.
#pragma once

#include <string>
#include <variant>
#include <vector>

#include "analysis/job.h"
#include "common/cli/command_line.h"

namespace genostat::analysis {

// The launched form: the job's parameters, JSON in base64.
struct LaunchedJob {
  std::string payload;
};

// `arguments` are UTF-8, without the program's name.
std::variant<QcOptions, LaunchedJob, common::Answer> parseArguments(std::vector<std::string> arguments);

}  // namespace genostat::analysis
