// Chunks of a file that is not compressed.
#pragma once

#include <memory>

#include "analysis/fastq/byte_window.h"
#include "analysis/fastq/chunk_source.h"

namespace genostat::analysis {

class PlainChunks : public ChunkSource {
 public:
  PlainChunks(std::unique_ptr<ByteWindow> bytes, std::size_t chunkSize)
      : bytes_(std::move(bytes)), chunkSize_(chunkSize) {}

  bool fetch(Chunk& chunk) override;
  std::uint64_t bytesRead() const override { return bytes_->bytesRead(); }

 private:
  std::unique_ptr<ByteWindow> bytes_;
  std::size_t chunkSize_;
  bool ended_ = false;
};

}  // namespace genostat::analysis
