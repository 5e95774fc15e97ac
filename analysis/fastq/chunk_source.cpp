#include "analysis/fastq/chunk_source.h"

#include <algorithm>
#include <atomic>
#include <utility>

#include "analysis/fastq/byte_window.h"
#include "analysis/fastq/gzip_chunks.h"

namespace genostat::analysis {

namespace {

// Enough to recognise a gzip member, and so little that plain text is not copied for it.
constexpr std::size_t kHeadSize = 512;

// Uncompressed bytes that come in their order only.
class StreamedChunks : public ChunkSource {
 public:
  StreamedChunks(std::unique_ptr<ByteWindow> bytes, std::size_t chunkSize)
      : bytes_(std::move(bytes)), chunkSize_(chunkSize) {}

  bool fetch(Chunk& chunk) override {
    chunk.clear();
    if (ended_) return false;
    chunk.text.reserve(chunkSize_);
    chunk.size = bytes_->moveInto({chunk.text.data(), chunkSize_});
    if (chunk.size < chunkSize_) {
      ended_ = true;
      chunk.defect = bytes_->failure();
    }
    return chunk.size > 0 || !chunk.defect.empty();
  }
  std::uint64_t bytesRead() const override { return bytes_->bytesRead(); }

 private:
  const std::unique_ptr<ByteWindow> bytes_;
  const std::size_t chunkSize_;
  bool ended_ = false;
};

// An uncompressed file that can be read at any place. Fetching only decides where a chunk lies; whoever
// expands it reads it, so that several are read at once and each into the cache of the processor that goes on
// with it. A file that grows meanwhile is read up to the size it had; one that shrinks has a defect.
class PlacedChunks : public ChunkSource {
 public:
  PlacedChunks(std::unique_ptr<ByteSource> bytes, std::size_t chunkSize)
      : bytes_(std::move(bytes)), chunkSize_(chunkSize) {}

  bool fetch(Chunk& chunk) override {
    const std::uint64_t offset = bytesRead();
    chunk.size = static_cast<std::size_t>(std::min<std::uint64_t>(bytes_->size() - offset, chunkSize_));
    chunk.defect.clear();
    chunk.blocks.assign(1, PackedBlock{.textSize = chunk.size, .fileOffset = offset});
    chunk.text.reserve(chunkSize_);
    offset_.store(offset + chunk.size, std::memory_order_relaxed);
    return chunk.size > 0;
  }

  void expand(Chunk& chunk) const override {
    for (const PackedBlock& block : chunk.blocks) {
      std::size_t filled = 0;
      try {
        while (filled < block.textSize) {
          const std::size_t size = bytes_->readAt(block.fileOffset + filled,
                                                  {chunk.text.data() + filled, block.textSize - filled});
          if (size == 0) throw SourceError("the file became shorter while it was read");
          filled += size;
        }
      } catch (const SourceError& error) {
        chunk.size = filled;
        chunk.defect = error.what();
      }
    }
  }
  std::uint64_t bytesRead() const override { return offset_.load(std::memory_order_relaxed); }

 private:
  const std::unique_ptr<ByteSource> bytes_;
  const std::size_t chunkSize_;
  std::atomic<std::uint64_t> offset_ = 0;  // of the next chunk
};

}  // namespace

std::unique_ptr<ChunkSource> openChunks(std::unique_ptr<ByteSource> bytes, std::size_t chunkSize) {
  auto window = std::make_unique<ByteWindow>(std::move(bytes));
  const bool twoBytes = window->extendTo(2, kHeadSize);
  if (twoBytes && parseMemberHeader(window->bytes()).state != MemberHeader::State::Foreign) {
    return std::make_unique<GzipChunks>(std::move(window), chunkSize);
  }
  if (window->isPlaced()) return std::make_unique<PlacedChunks>(window->takeSource(), chunkSize);
  return std::make_unique<StreamedChunks>(std::move(window), chunkSize);
}

}  // namespace genostat::analysis
