// The bytes of standard input as they are.
#pragma once

#include "analysis/fastq/byte_source.h"

namespace genostat::analysis {

// There is one standard input: use one of these at a time. On systems that tell text from binary streams the
// program must have switched standard input to binary (platform::prepareStandardStreams).
class StandardInput : public ByteSource {
 public:
  std::size_t read(std::span<char> into) override;
};

}  // namespace genostat::analysis
