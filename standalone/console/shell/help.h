// The texts of `help` in genostat shell.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace genostat::standalone {

// The topics in their order, commands in upper case.
std::vector<std::string> helpTopics();

// All topics, a line each.
std::string helpOverview();

// Usage, options and an example; empty for an unknown topic. Any case, abbreviated as commands are.
std::string helpOn(std::string_view topic);

}  // namespace genostat::standalone
