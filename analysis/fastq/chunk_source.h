// A FASTQ file as a sequence of chunks of text, for several threads.
//
// A chunk is fetched by one thread at a time, in file order; what can be done apart from its neighbours
// (inflating independent blocks) is left to expand(), which any number of threads may run at once, each on
// a chunk of its own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "analysis/fastq/byte_source.h"
#include "analysis/fastq/text_buffer.h"

namespace genostat::analysis {

// A compressed block that expands to a known place of its chunk's text.
struct PackedBlock {
  std::size_t packedOffset = 0;  // into Chunk::packed
  std::size_t packedSize = 0;
  std::size_t textOffset = 0;
  std::size_t textSize = 0;
  std::uint64_t fileOffset = 0;  // of its first byte, for messages
};

struct Chunk {
  TextBuffer text;
  std::size_t size = 0;  // bytes of text
  std::vector<char> packed;
  std::vector<PackedBlock> blocks;
  // Why the text ends after this chunk although the file does not; empty when all is well. All text before
  // the defect is in the chunk.
  std::string defect;

  void clear() {
    size = 0;
    blocks.clear();
    defect.clear();
  }
};

class ChunkSource {
 public:
  ChunkSource() = default;
  ChunkSource(const ChunkSource&) = delete;
  ChunkSource& operator=(const ChunkSource&) = delete;
  virtual ~ChunkSource() = default;

  // Puts the next chunk into `chunk`, whose memory is used again; its text may be empty. False at the end and
  // after a defect; then the chunk is empty. Throws std::bad_alloc only.
  virtual bool fetch(Chunk& chunk) = 0;

  // Makes the text of a fetched chunk complete; a defect met here shortens the text and is noted in the
  // chunk.
  virtual void expand(Chunk& chunk) const { (void)chunk; }

  // How many bytes of the file have been read, for a progress display. Any thread.
  virtual std::uint64_t bytesRead() const = 0;
};

// Recognises by the content whether the bytes are plain text, gzip (any number of members one after another)
// or blocked gzip (bgzf), and takes them apart. Reads the first bytes at once, so that a failure to do so is
// the first chunk's defect. Throws std::bad_alloc only.
//
// A chunk holds about `chunkSize` bytes of text, at least 1; blocks of blocked gzip stay whole, so a chunk of
// them may hold up to 64 KiB where less is asked for.
//
// Defects: bytes that cannot be read, corrupt compressed data, an end of the data inside a member, and bytes
// after a member that are no further member. Every member's checksum and length are verified.
std::unique_ptr<ChunkSource> openChunks(std::unique_ptr<ByteSource> bytes,
                                        std::size_t chunkSize = std::size_t{512} << 10);

}  // namespace genostat::analysis
