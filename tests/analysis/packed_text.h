// Compressed forms of a text, made by zlib.
#pragma once

#include <string>

namespace genostat::test {

struct GzipOptions {
  int level = 6;
  bool fixedCodes = false;
  std::string extra = {};    // the extra field, if not empty
  bool namesAndSum = false;  // a name, a comment and the header's checksum
};

// One gzip member.
std::string gzip(const std::string& text, const GzipOptions& options = {});

// One bgzf block, of at most 65280 bytes of text. `otherFields` stand before its own extra field.
std::string bgzfBlock(const std::string& text, const std::string& otherFields = {});

// The text as blocks of `blockSize`, without the empty block that usually ends a file.
std::string bgzf(const std::string& text, std::size_t blockSize = 65280);

}  // namespace genostat::test
