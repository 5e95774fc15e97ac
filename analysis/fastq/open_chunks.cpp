#include "analysis/fastq/open_chunks.h"

#include "analysis/fastq/byte_window.h"
#include "analysis/fastq/gzip_chunks.h"
#include "analysis/fastq/placed_chunks.h"
#include "analysis/fastq/plain_chunks.h"

namespace genostat::analysis {

namespace {

// Enough to tell a gzip member, and so little that plain text is not copied for it.
constexpr std::size_t kHeadSize = 512;

}  // namespace

std::unique_ptr<ChunkSource> openChunks(std::unique_ptr<ByteSource> bytes, const ChunkOptions& options) {
  auto window = std::make_unique<ByteWindow>(std::move(bytes));
  const bool twoBytes = window->extendTo(2, kHeadSize);
  if (twoBytes && parseMemberHeader(window->bytes()).state != MemberHeader::State::Foreign) {
    return std::make_unique<GzipChunks>(std::move(window), options.chunkSize);
  }
  if (window->isPlaced()) return std::make_unique<PlacedChunks>(window->takeSource(), options.chunkSize);
  return std::make_unique<PlainChunks>(std::move(window), options.chunkSize);
}

}  // namespace genostat::analysis
