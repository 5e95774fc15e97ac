// One read of a FASTQ file.
#pragma once

#include <cstdint>
#include <string_view>

namespace genostat::analysis {

// Views into the memory of a batch. Sequence and quality have the same length, which may be 0.
// TextBuffer::kPadding bytes after each view may be read.
struct Record {
  std::string_view header;  // with its '@'
  std::string_view sequence;
  std::string_view quality;
  std::uint64_t line = 0;  // of the header, from 1
};

}  // namespace genostat::analysis
