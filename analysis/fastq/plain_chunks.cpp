#include "analysis/fastq/plain_chunks.h"

namespace genostat::analysis {

bool PlainChunks::fetch(Chunk& chunk) {
  chunk.size = 0;
  chunk.blocks.clear();
  chunk.defect.clear();
  if (ended_) return false;
  chunk.text.reserve(chunkSize_);
  chunk.size = bytes_->moveInto({chunk.text.data(), chunkSize_});
  if (chunk.size < chunkSize_) {
    ended_ = true;
    chunk.defect = bytes_->failure();
  }
  return chunk.size > 0 || !chunk.defect.empty();
}

}  // namespace genostat::analysis
