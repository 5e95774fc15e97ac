#include "run/paths.h"

#include <chrono>
#include <exception>

#include "host/path_service.h"
#include "platform/files.h"

namespace genostat {

namespace {

constexpr char kSeparators[] = "/\\";
constexpr int kInstallationFolderKind = 3;
constexpr int kMaxCandidates = 1000;

}  // namespace

std::optional<std::string> installationFolder() {
  PathFinder* finder = PathFactory::getPathInstance(kInstallationFolderKind);
  if (finder == nullptr) return std::nullopt;
  return finder->path();
}

std::string joinPath(const std::string& base, const std::string& name) {
  std::string path = base;
  if (!path.empty() && path.find_last_of(kSeparators) != path.size() - 1) path += platform::kPathSeparator;
  return path + name;
}

std::string getFolderPath(const std::string& path) {
  const std::size_t separator = path.find_last_of(kSeparators);
  return separator == std::string::npos ? std::string() : path.substr(0, separator + 1);
}

std::string generateUniqueFilename(const std::string& folder, std::int64_t time) {
  try {
    if (!platform::directoryExists(folder)) return {};
    const std::string stamp = std::to_string(time);
    std::string candidate = joinPath(folder, stamp + ".csv");
    for (int n = 1; n < kMaxCandidates && platform::fileExists(candidate); ++n) {
      candidate = joinPath(folder, stamp + "_" + std::to_string(n) + ".csv");
    }
    return candidate;
  } catch (const std::exception&) {
    return {};
  }
}

std::string generateUniqueFilename(const std::string& folder) {
  if (!platform::directoryExists(folder)) return {};
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  return generateUniqueFilename(folder, std::chrono::floor<std::chrono::seconds>(now).count());
}

}  // namespace genostat
