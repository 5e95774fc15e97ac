#include "analysis/fastq/gzip_chunks.h"

#include <algorithm>

namespace genostat::analysis {

namespace {

// What is inflated at a time is summed while it is still in the cache.
constexpr std::size_t kSlice = std::size_t{256} << 10;

constexpr const char* kBadData = "invalid data";
constexpr const char* kBadSum = "wrong checksum";
constexpr const char* kBadSize = "wrong length";

}  // namespace

GzipChunks::GzipChunks(std::unique_ptr<ByteWindow> bytes, std::size_t chunkSize)
    : bytes_(std::move(bytes)), chunkSize_(chunkSize), packedGoal_(std::max(chunkSize / 2, kMaxBlockSize)) {}

bool GzipChunks::fetch(Chunk& chunk) {
  chunk.clear();
  while (!ended_ && chunk.size < chunkSize_) {
    if (inMember_) {
      inflateMember(chunk);
      continue;
    }
    const std::optional<MemberHeader> header = lookAtMember(chunk);
    if (!header) break;
    if (!header->memberSize) {
      beginMember(*header);
      continue;
    }
    if (chunk.size == 0) takeBlocks(chunk);
    break;
  }
  return chunk.size > 0 || !chunk.blocks.empty() || !chunk.defect.empty();
}

std::optional<MemberHeader> GzipChunks::lookAtMember(Chunk& chunk) {
  if (!bytes_->extendTo(1)) {
    end(chunk, bytes_->failure());
    return std::nullopt;
  }
  MemberHeader header = parseMemberHeader(bytes_->bytes());
  while (header.state == MemberHeader::State::Cut && bytes_->extend()) {
    header = parseMemberHeader(bytes_->bytes());
  }
  switch (header.state) {
    case MemberHeader::State::Whole:
      return header;
    case MemberHeader::State::Cut:
      endTooEarly(chunk);
      break;
    case MemberHeader::State::Foreign:
      end(chunk, located("after the compressed data follow bytes that are not compressed", bytes_->offset()));
      break;
    case MemberHeader::State::Wrong:
      end(chunk, corruptAt(header.reason, bytes_->offset()));
      break;
  }
  return std::nullopt;
}

void GzipChunks::takeBlocks(Chunk& chunk) {
  const std::uint64_t offset = bytes_->offset();
  const std::size_t goal = std::max(packedGoal_, bytes_->bytes().size());
  // Only ever grown: growing again what was made smaller would clear it.
  if (chunk.packed.size() < goal) chunk.packed.resize(goal);
  const std::span<const char> packed(chunk.packed.data(), bytes_->moveInto({chunk.packed.data(), goal}));
  std::size_t used = 0;
  const char* defect = nullptr;
  for (;;) {
    const std::span<const char> rest = packed.subspan(used);
    const MemberHeader header = parseMemberHeader(rest);
    if (header.state != MemberHeader::State::Whole || !header.memberSize) break;
    const std::size_t size = *header.memberSize;
    if (size < header.size + kTrailerSize) {
      defect = "wrong block size";
      break;
    }
    if (size > rest.size()) break;
    const std::size_t packedEnd = size - kTrailerSize;
    const std::size_t textSize = parseMemberTrailer(rest.subspan(packedEnd, kTrailerSize)).textSize;
    if (textSize > kMaxBlockText) {
      defect = kBadSize;
      break;
    }
    if (chunk.size + textSize > chunkSize_ && !chunk.blocks.empty()) break;
    chunk.blocks.push_back(
        {used + header.size, packedEnd - header.size, chunk.size, textSize, offset + used});
    chunk.size += textSize;
    used += size;
  }
  chunk.text.reserve(std::max(chunk.size, chunkSize_));
  bytes_->giveBack(packed.subspan(used));
  if (defect != nullptr) {
    end(chunk, corruptAt(defect, offset + used));
  } else if (chunk.blocks.empty()) {
    endTooEarly(chunk);
  } else if (chunk.size > 0) {
    // As much as would have made this chunk full, and a block more.
    // No more than blocks of any sense take: a goal that is too small makes a smaller chunk, nothing else.
    const std::size_t full = used * chunkSize_ / chunk.size + used / chunk.blocks.size();
    packedGoal_ = std::clamp(full, kMaxBlockSize, 2 * std::max(chunkSize_, kMaxBlockSize));
  }
}

void GzipChunks::expand(Chunk& chunk) const {
  if (chunk.blocks.empty()) return;
  Inflater inflater;
  const std::span<const char> packed(chunk.packed);
  for (const PackedBlock& block : chunk.blocks) {
    const std::span<char> text(chunk.text.data() + block.textOffset, block.textSize);
    const MemberTrailer trailer =
        parseMemberTrailer(packed.subspan(block.packedOffset + block.packedSize, kTrailerSize));
    const char* defect = nullptr;
    if (!inflater.inflateWhole(packed.subspan(block.packedOffset, block.packedSize), text)) {
      defect = kBadData;
    } else if (crc32(0, text) != trailer.sum) {
      defect = kBadSum;
    }
    if (defect != nullptr) {
      chunk.size = block.textOffset;
      chunk.defect = corruptAt(defect, block.fileOffset);
      return;
    }
  }
}

void GzipChunks::beginMember(const MemberHeader& header) {
  bytes_->advance(header.size);
  inflater_.restart();
  made_ = {};
  inMember_ = true;
}

void GzipChunks::inflateMember(Chunk& chunk) {
  chunk.text.reserve(chunkSize_, chunk.size);
  const std::size_t room = std::min(chunkSize_ - chunk.size, kSlice);
  char* const text = chunk.text.data() + chunk.size;
  const Inflater::Step step = inflater_.inflate(bytes_->bytes(), {text, room});
  bytes_->advanceTo(step.next);
  made_.sum = crc32(made_.sum, {text, step.made});
  made_.textSize += static_cast<std::uint32_t>(step.made);
  chunk.size += step.made;
  switch (step.outcome) {
    case Inflater::Outcome::NeedsInput:
      if (!bytes_->extend()) endTooEarly(chunk);
      break;
    case Inflater::Outcome::OutputFull:
      break;
    case Inflater::Outcome::Finished:
      endMember(chunk);
      break;
    case Inflater::Outcome::Corrupt:
      end(chunk, corruptAt(kBadData, bytes_->offset()));
      break;
  }
}

void GzipChunks::endMember(Chunk& chunk) {
  inMember_ = false;
  if (!bytes_->extendTo(kTrailerSize)) {
    endTooEarly(chunk);
    return;
  }
  const MemberTrailer trailer = parseMemberTrailer(bytes_->bytes());
  if (trailer.sum != made_.sum) {
    end(chunk, corruptAt(kBadSum, bytes_->offset()));
  } else if (trailer.textSize != made_.textSize) {
    end(chunk, corruptAt(kBadSize, bytes_->offset()));
  }
  bytes_->advance(kTrailerSize);
}

void GzipChunks::end(Chunk& chunk, std::string defect) {
  ended_ = true;
  chunk.defect = std::move(defect);
}

void GzipChunks::endTooEarly(Chunk& chunk) {
  end(chunk, bytes_->failure().empty() ? located("the compressed data end too early", bytes_->bytesRead())
                                       : bytes_->failure());
}

}  // namespace genostat::analysis
