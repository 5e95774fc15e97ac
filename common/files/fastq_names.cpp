#include "common/files/fastq_names.h"

#include <algorithm>

#include "common/text/ascii.h"
#include "platform/path_text.h"

namespace genostat::common {

namespace {

// The text before an ending, which may be in any case; all of it when it ends otherwise.
std::string_view before(std::string_view ending, std::string_view text) {
  if (text.size() < ending.size()) return text;
  const std::size_t stem = text.size() - ending.size();
  return equalsIgnoreCase(text.substr(stem), ending) ? text.substr(0, stem) : text;
}

std::string_view beforeFastqEnding(std::string_view plainName) {
  const std::string_view stem = before(".fastq", plainName);
  return stem.size() < plainName.size() ? stem : before(".fq", plainName);
}

}  // namespace

bool hasFastqEnding(std::string_view fileName) {
  const std::string_view plainName = before(".gz", fileName);
  return beforeFastqEnding(plainName).size() < plainName.size();
}

std::string sampleName(std::string_view fileName) {
  const std::string_view stem = beforeFastqEnding(before(".gz", fileName));
  return std::string(stem.empty() ? fileName : stem);
}

std::vector<std::string> fastqNamesIn(const std::filesystem::path& folder, std::error_code& error) {
  std::vector<std::string> names;
  std::filesystem::directory_iterator entry(folder, error);
  for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
    std::error_code unknown;
    std::string name = platform::pathToUtf8(entry->path().filename());
    const bool isMeant = hasFastqEnding(name) && !name.starts_with('.');
    if (isMeant && !entry->is_directory(unknown)) names.push_back(std::move(name));
  }
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace genostat::common
