#include "analysis/fastq/file_source.h"

#include <system_error>

namespace genostat::analysis {

std::size_t FileSource::read(std::span<char> into) {
  const std::size_t size = readAt(offset_, into);
  offset_ += size;
  return size;
}

std::size_t FileSource::readAt(std::uint64_t offset, std::span<char> into) const {
  try {
    return file_.readAt(offset, into);
  } catch (const std::system_error& error) {
    throw SourceError("reading the file failed: " + error.code().message());
  }
}

}  // namespace genostat::analysis
