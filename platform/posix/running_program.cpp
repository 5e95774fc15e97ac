#include "platform/running_program.h"

#include <unistd.h>

#include <array>
#include <system_error>

namespace genostat::platform {

std::vector<std::string> commandLineArguments(int argc, const char* const* argv) {
  return argc > 0 ? std::vector<std::string>(argv + 1, argv + argc) : std::vector<std::string>();
}

std::filesystem::path programFolder() {
  std::error_code error;
  return std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
}

int processId() {
  return getpid();
}

std::string hostName() {
  std::array<char, 256> name{};
  // A longer one may come without its end.
  gethostname(name.data(), name.size() - 1);
  return name.data();
}

void exitNow(int status) {
  _exit(status);
}

}  // namespace genostat::platform
