// Facts about the running program, and its end.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace genostat::platform {

// The program's arguments as UTF-8, without the program's own name.
std::vector<std::string> commandLineArguments(int argc, const char* const* argv);

// The folder of the running program, links resolved.
std::filesystem::path programFolder();

// The id of the running process.
int processId();

// The name of this computer in its network, as the system has it.
std::string hostName();

// Ends the program at once, without any clean-up.
[[noreturn]] void exitNow(int status);

}  // namespace genostat::platform
