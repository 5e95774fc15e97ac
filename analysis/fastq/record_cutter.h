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

#include <array>
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
  std::vector<Record> records;      // all whole records, in file order
  std::uint64_t recordsBefore = 0;  // in the file before this batch
  std::uint64_t filledBefore = 0;   // of them, those with at least one base
  std::uint64_t longestBefore = 0;  // length of the longest of them
  // The first break of the rules in or after the records of this batch, if there is one.
  std::optional<FastqError> error;
};

class RecordCutter {
 public:
  // `mayBeEmpty`: a file without any line is no error.
  explicit RecordCutter(bool mayBeEmpty = false) : mayBeEmpty_(mayBeEmpty) {}

  // Cuts the next batch, whose chunk is expanded and whose line feeds are known. `last`: no chunk follows.
  // After an error no further batch may be cut. Quality characters are not looked at. Throws std::bad_alloc
  // only.
  void cut(Batch& batch, bool last);

 private:
  // Where the lines of a record end: at their line feeds, or where the text does.
  using LineEnds = std::array<std::size_t, 4>;

  // A record whose end is still to come. Its text starts with its header; blank lines are gone.
  struct Begun {
    const char* text = nullptr;
    std::size_t begin = 0;
    std::size_t end = 0;
    LineEnds lineEnds = {};
    std::size_t lines = 0;  // complete ones, at most 3
  };

  // A place in the batch's chunk: a byte, and the first line feed not before it.
  struct Place {
    std::size_t at = 0;
    std::size_t feed = 0;
  };

  // What has been cut so far.
  struct Tally {
    std::uint64_t line = 1;  // number of the line at which the next record begins
    std::uint64_t records = 0;
    std::uint64_t filled = 0;
    std::uint64_t longest = 0;

    void add(std::uint64_t length) {
      line += 4;
      ++records;
      filled += length > 0 ? 1U : 0U;
      longest = length > longest ? length : longest;
    }
  };

  // The steps of cut(). Those that return bool leave an error in the batch when they return false.
  void cutChunk(Batch& batch, bool last);
  Place join(Batch& batch);
  Place walk(Batch& batch, Place place);
  bool take(Batch& batch, const char* text, std::size_t begin, const LineEnds& ends);
  static bool makeRecord(const char* text, std::size_t begin, const LineEnds& ends, std::uint64_t line,
                         Record& record);
  bool checkRecord(Batch& batch, const Begun& begun, const Record& record) const;
  bool checkBegun(Batch& batch, const Begun& begun) const;
  void carry(const Begun& begun);
  void finish(Batch& batch, Begun begun);
  void append(const char* text, std::size_t size);
  bool fail(Batch& batch, std::size_t line, const std::string& sentence) const;

  TextBuffer carried_;  // the unfinished record at the end of the chunks so far
  std::size_t carriedSize_ = 0;
  LineEnds carriedEnds_ = {};
  std::size_t carriedLines_ = 0;
  const bool mayBeEmpty_;
  Tally tally_;
};

}  // namespace genostat::analysis
