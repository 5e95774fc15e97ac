// From the bytes of a file to chunks of its text, whatever its compression.
#pragma once

#include <cstddef>
#include <memory>

#include "analysis/fastq/byte_source.h"
#include "analysis/fastq/chunk_source.h"

namespace genostat::analysis {

struct ChunkOptions {
  // About how many bytes of text a chunk holds, at least 1. Blocks of blocked gzip stay whole, so a chunk of
  // them may hold up to 64 KiB where less is asked for.
  std::size_t chunkSize = std::size_t{512} << 10;
};

// Tells by the content whether the bytes are plain text, gzip (any number of members one after another) or
// blocked gzip (bgzf), and takes them apart. Reads the first bytes at once, so that a failure to do so is the
// first chunk's defect. Throws std::bad_alloc only.
//
// Defects: bytes that cannot be read, corrupt compressed data, an end of the data inside a member, and bytes
// after a member that are no further member. Every member's checksum and length are verified.
std::unique_ptr<ChunkSource> openChunks(std::unique_ptr<ByteSource> bytes, const ChunkOptions& options = {});

}  // namespace genostat::analysis
