// Bytes to records.
//
// A record is four lines: '@' header, sequence, '+' line, quality. A line ends in LF or CR LF, the
// last one may end without; a carriage return before the end of the file counts as a line end, too.
// Empty lines between records are skipped. Sequence and quality are equally long and may be empty.
//
// The reader fills one buffer, cuts it into records and hands them out as a batch of views; an
// unfinished record at the end moves to the buffer's front and the next block is read behind it. A record
// that does not fit doubles the buffer, so memory grows with the longest record only.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "analysis/fastq/byte_source.h"
#include "analysis/fastq/fastq_error.h"
#include "analysis/fastq/record.h"

namespace genostat::analysis {

class RecordReader {
 public:
  // Small enough to stay in the second-level cache while the metrics go over a batch.
  static constexpr std::size_t kDefaultBufferSize = std::size_t{256} << 10;

  // `source` must outlive the reader. `bufferSize` is at least 1.
  explicit RecordReader(ByteSource& source, std::size_t bufferSize = kDefaultBufferSize);

  // The next records in file order, empty at the end. Throws a FastqError for the first record that
  // breaks the rules, at the end of a file without records, and when the source fails; batches
  // before it may or may not have been handed out.
  std::span<const Record> next();

 private:
  // Cuts the record at begin_ off the buffer; false when it is not complete yet (or there is none).
  bool cutRecord();
  void skipBlankLines();
  void checkRecord(const Record& record, std::uint64_t line) const;
  // Reads on behind the bytes not yet cut.
  void refill();
  [[noreturn]] void fail(std::uint64_t line, const std::string& sentence) const;

  ByteSource& source_;
  std::size_t capacity_;
  std::unique_ptr<char[]> buffer_;  // one byte longer than capacity_: a last line may get its line feed
  std::size_t begin_ = 0;           // the first byte not yet cut
  std::size_t end_ = 0;
  std::uint64_t line_ = 1;      // number of the line at begin_
  std::uint64_t stopLine_ = 1;  // number of the line at which the last incomplete record broke off
  std::uint64_t records_ = 0;
  bool atEnd_ = false;        // the source has no more bytes
  bool endlessLine_ = false;  // the last line came without its line feed
  std::string sourceDefect_;  // why the source has no more bytes, if it failed
  std::vector<Record> batch_;
};

}  // namespace genostat::analysis
