#include "platform/environment.h"

#include <cstdlib>

namespace genostat::platform {

std::filesystem::path environmentPath(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::filesystem::path() : std::filesystem::path(value);
}

void setEnvironmentPath(const char* name, const std::filesystem::path& value) {
  setenv(name, value.c_str(), 1);
}

std::vector<std::string> systemLanguages() {
  return {};
}

}  // namespace genostat::platform
