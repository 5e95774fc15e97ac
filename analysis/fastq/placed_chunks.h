// Chunks of an uncompressed file that can be read at any place.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>

#include "analysis/fastq/byte_source.h"
#include "analysis/fastq/chunk_source.h"

namespace genostat::analysis {

// Fetching only decides where a chunk lies; whoever expands it reads it, so that several are read at once and
// each into the cache of the processor that goes on with it.
class PlacedChunks : public ChunkSource {
 public:
  // The source's size is known. A file that grows meanwhile is read up to that; one that shrinks has a
  // defect.
  PlacedChunks(std::unique_ptr<ByteSource> source, std::size_t chunkSize)
      : source_(std::move(source)), chunkSize_(chunkSize) {}

  bool fetch(Chunk& chunk) override;
  void expand(Chunk& chunk) const override;
  std::uint64_t bytesRead() const override { return offset_.load(std::memory_order_relaxed); }

 private:
  const std::unique_ptr<ByteSource> source_;
  const std::size_t chunkSize_;
  std::atomic<std::uint64_t> offset_ = 0;  // of the next chunk
};

}  // namespace genostat::analysis
