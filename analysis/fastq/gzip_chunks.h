// Chunks of a gzip file: any number of members one after another.
//
// A usual member can only be inflated from its start to its end, so fetch() does that, straight into the
// chunk's text. Members that are bgzf blocks state their size and that of their text: fetch() takes as many
// whole ones as make a chunk and leaves inflating them to expand(). Both kinds may follow each other in a
// file, never in a chunk.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "analysis/fastq/byte_window.h"
#include "analysis/fastq/chunk_source.h"
#include "analysis/fastq/gzip_framing.h"
#include "analysis/fastq/inflate/inflater.h"

namespace genostat::analysis {

class GzipChunks : public ChunkSource {
 public:
  // `bytes` begin with a member.
  GzipChunks(std::unique_ptr<ByteWindow> bytes, std::size_t chunkSize);

  bool fetch(Chunk& chunk) override;
  void expand(Chunk& chunk) const override;
  std::uint64_t bytesRead() const override { return bytes_->bytesRead(); }

 private:
  // The header of the member that begins here; none at the end of the file and at a defect, which is noted.
  std::optional<MemberHeader> lookAtMember(Chunk& chunk);
  void takeBlocks(Chunk& chunk);
  void beginMember(const MemberHeader& header);
  // Goes on with the member and fills the chunk with its text as far as it goes.
  void inflateMember(Chunk& chunk);
  void endMember(Chunk& chunk);

  void end(Chunk& chunk, std::string defect);
  void endTooEarly(Chunk& chunk);

  std::unique_ptr<ByteWindow> bytes_;
  std::size_t chunkSize_;
  std::size_t packedGoal_;  // bytes of blocks to read for a chunk
  bool ended_ = false;

  // The member that is inflated.
  bool inMember_ = false;
  Inflater inflater_;
  MemberTrailer made_;  // what its trailer has to say
};

}  // namespace genostat::analysis
