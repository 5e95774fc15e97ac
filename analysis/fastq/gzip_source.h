// The decompressed bytes of a gzip stream: any number of members one after another.
#pragma once

#include <zlib.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/fastq/byte_source.h"

namespace genostat::analysis {

// Bytes after a member that are no further member are an error, and so is an end of the data
// inside a member. Every member's checksum is verified.
class GzipSource : public ByteSource {
 public:
  static constexpr std::string_view kMagic = "\x1f\x8b";

  // `inputSize`: how many compressed bytes are read at a time, at least 2.
  explicit GzipSource(std::unique_ptr<ByteSource> compressed, std::size_t inputSize = std::size_t{128} << 10);
  ~GzipSource() override;

  std::size_t read(std::span<char> into) override;

 private:
  // False at the end of the compressed data.
  bool refill();
  // Moves on to the member that starts here; false at the end of the data. Throws when it is none.
  bool beginMember();
  std::string located(const std::string& defect) const;

  std::unique_ptr<ByteSource> compressed_;
  std::vector<char> input_;
  std::uint64_t compressedRead_ = 0;
  bool betweenMembers_ = true;
  std::string defect_;  // met after output that had to be delivered first
  z_stream stream_ = {};
};

}  // namespace genostat::analysis
