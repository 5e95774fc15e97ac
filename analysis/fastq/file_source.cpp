#include "analysis/fastq/file_source.h"

#include <cerrno>
#include <ios>
#include <system_error>

namespace genostat::analysis {

FileSource::FileSource(const std::filesystem::path& path) {
  // Callers read large blocks: a buffer in between would only copy.
  file_.pubsetbuf(nullptr, 0);
  errno = 0;
  if (file_.open(path, std::ios::in | std::ios::binary) == nullptr) {
    throw std::system_error(errno, std::generic_category());
  }
}

std::size_t FileSource::read(std::span<char> into) {
  try {
    return static_cast<std::size_t>(file_.sgetn(into.data(), static_cast<std::streamsize>(into.size())));
  } catch (const std::ios_base::failure& failure) {
    throw SourceError("reading the file failed: " + failure.code().message());
  }
}

}  // namespace genostat::analysis
