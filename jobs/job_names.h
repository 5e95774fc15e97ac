// The names of jobs, which become names of datasets.
#pragma once

#include <string>

namespace genostat {

// True when an open dataset bears this name, without regard to case. Command thread only.
bool isDatasetName(const std::string& name);

}  // namespace genostat
