#include "standalone/session/private_folder.h"

#include <string>
#include <system_error>

#include "platform/running_program.h"

namespace genostat::standalone {

namespace {
// A number of the same process id may be left over from a program that was killed.
constexpr int kMostAttempts = 100;
}  // namespace

PrivateFolder::PrivateFolder(const std::filesystem::path& base) {
  if (base.empty()) return;
  const std::string stem = "genostat-" + std::to_string(platform::processId());
  for (int n = 0; n < kMostAttempts; ++n) {
    const std::filesystem::path path = base / (stem + "-" + std::to_string(n));
    std::error_code error;
    if (!std::filesystem::create_directory(path, error)) {
      if (error) return;
      continue;
    }
    std::filesystem::permissions(path, std::filesystem::perms::owner_all, error);
    path_ = path;
    return;
  }
}

void PrivateFolder::remove() {
  std::error_code ignored;
  if (!path_.empty()) std::filesystem::remove_all(path_, ignored);
}

}  // namespace genostat::standalone
