// One read of a FASTQ file.
#pragma once

#include <string_view>

namespace genostat::analysis {

// Views into the reader's buffer, valid until its next batch. Sequence and quality have the
// same length, which may be 0; every quality character lies between '!' and '~'.
struct Record {
  std::string_view header;  // with its '@'
  std::string_view sequence;
  std::string_view quality;
};

}  // namespace genostat::analysis
