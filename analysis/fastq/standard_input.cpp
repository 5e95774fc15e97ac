#include "analysis/fastq/standard_input.h"

#include <cerrno>
#include <cstdio>
#include <system_error>

namespace genostat::analysis {

std::size_t StandardInput::read(std::span<char> into) {
  errno = 0;
  const std::size_t size = std::fread(into.data(), 1, into.size(), stdin);
  // Bytes before the failure are delivered first; the stream remembers that it failed.
  if (size == 0 && std::ferror(stdin) != 0) {
    const std::error_code reason(errno, std::generic_category());
    throw SourceError("reading standard input failed" + (reason ? ": " + reason.message() : std::string()));
  }
  return size;
}

}  // namespace genostat::analysis
