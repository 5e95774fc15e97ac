// The program's command line.
#pragma once

#include <string>
#include <variant>
#include <vector>

#include "analysis/job.h"

namespace genostat::analysis {

// The launched form: the job's parameters, JSON in base64.
struct LaunchedJob {
  std::string payload;
};

// Nothing to run: a text to show, help or an error, and the exit code.
struct Answer {
  std::string text;
  ExitCode code = ExitCode::Success;
};

// `arguments` are UTF-8, without the program's name.
std::variant<QcOptions, LaunchedJob, Answer> parseArguments(std::vector<std::string> arguments);

}  // namespace genostat::analysis
