// Text to records.
//
// A record is four lines: '@' header, sequence, '+' line, quality. A line ends in LF or CR LF, the
// last one may end without; a carriage return before the end of the file counts as a line end, too.
// Empty lines between records are skipped. Sequence and quality are equally long and may be empty.
//
// Where a chunk's lines end is found beforehand, by any thread; the cutter sees the chunks in file order
// and only puts lines together. A record that began in an earlier chunk is copied together in the batch's
// seam; all others are views into their chunk.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "analysis/fastq/chunk_source.h"
#include "analysis/fastq/fastq_error.h"
#include "analysis/fastq/record.h"

namespace genostat::analysis {

// A chunk on its way, with what is known about it; its memory is used again for later chunks.
struct Batch {
  Chunk chunk;
  std::unique_ptr<std::uint32_t[]> lineFeeds;  // offsets into the chunk's text, ascending
  std::size_t lineFeedCapacity = 0;
  std::size_t lineFeedCount = 0;

  TextBuffer seam;
  std::vector<Record> records;    // all whole records, in file order
  std::uint64_t recordsBefore = 0;  // in the file before this batch
  std::uint64_t filledBefore = 0;   // of them, those with at least one base
  std::uint64_t longestBefore = 0;  // length of the longest of them
  // The first break of the rules in or after the records of this batch, if there is one.
  std::optional<FastqError> error;
};

class RecordCutter {
 public:
  // Cuts the next batch, whose chunk is expanded and whose line feeds are known. `last`: no chunk follows.
  // After an error no further batch may be cut. Quality characters are not looked at.
  void cut(Batch& batch, bool last);

 private:
  TextBuffer carried_;  // the unfinished record at the end of the chunks so far
};

}  // namespace genostat::analysis
