#include "analysis/fastq/placed_chunks.h"

#include <algorithm>

namespace genostat::analysis {

bool PlacedChunks::fetch(Chunk& chunk) {
  const std::uint64_t offset = bytesRead();
  chunk.size = static_cast<std::size_t>(std::min<std::uint64_t>(source_->size() - offset, chunkSize_));
  chunk.defect.clear();
  chunk.blocks.assign(1, PackedBlock{.textSize = chunk.size, .fileOffset = offset});
  chunk.text.reserve(chunkSize_);
  offset_.store(offset + chunk.size, std::memory_order_relaxed);
  return chunk.size > 0;
}

void PlacedChunks::expand(Chunk& chunk) const {
  for (const PackedBlock& block : chunk.blocks) {
    std::size_t filled = 0;
    try {
      while (filled < block.textSize) {
        const std::size_t size =
            source_->readAt(block.fileOffset + filled, {chunk.text.data() + filled, block.textSize - filled});
        if (size == 0) throw SourceError("the file became shorter while it was read");
        filled += size;
      }
    } catch (const SourceError& error) {
      chunk.size = filled;
      chunk.defect = error.what();
    }
  }
}

}  // namespace genostat::analysis
