// Delimited text, record by record.
#pragma once

#include <cstddef>
#include <cstdint>
#include <istream>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/data/stop_finder.h"

namespace genostat::standalone {

// A data file that cannot be read; the message names the line, not the file.
struct ImportError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

struct DelimitedFormat {
  std::string delimiters = ",";         // each byte separates fields
  std::optional<char> qualifier = '"';  // encloses fields that hold delimiters, line ends or itself, doubled
};

struct Record {
  std::size_t line = 0;  // where it begins, counted from 1
  // Behind each field, kNumberPadding further bytes can be read.
  std::span<const std::string_view> fields;
  bool isBlank = false;  // nothing at all stands in its line
};

// Reads UTF-8 with or without a byte order mark, lines ending in LF or CR LF, in chunks; holds one
// chunk and the record that goes on beyond it. A qualifier inside an unquoted field is plain text,
// and text after a closing qualifier belongs to the field. Borrows the stream.
class RecordReader {
 public:
  RecordReader(std::istream& input, const DelimitedFormat& format);

  // Some of the next records, valid until the next call; none after the last one. Throws ImportError.
  std::span<const Record> next();

  // Bytes of the text up to the end of the records that next() gave last.
  std::uintmax_t bytesRead() const { return discarded_ + position_; }

 private:
  // A field of which quotes had to be undone: its bytes in `unquoted_`.
  struct UnquotedField {
    std::size_t field;
    std::size_t begin;
    std::size_t end;
  };

  bool scanRecord();
  void finishBatch();
  const char* scanQuotedField(const char* qualifier);
  bool readMore();
  void checkByteOrderMark();

  std::istream& input_;
  std::optional<char> qualifier_;
  std::vector<std::uint64_t> delimiters_;  // as StopFinder takes them
  StopFinder stops_;                       // after the fields that were scanned
  std::vector<char> buffer_;               // the text and line feeds after it
  std::size_t size_ = 0;                   // of the text in the buffer
  std::uintmax_t discarded_ = 0;           // bytes before the buffer
  std::size_t position_ = 0;               // the next record's begin
  bool atEnd_ = false;                     // the stream holds nothing more
  std::size_t line_ = 1;                   // of the next record
  std::size_t lineFeedsInQuotes_ = 0;      // of the record that is scanned
  std::string unquoted_;
  std::vector<UnquotedField> unquotedFields_;
  std::vector<std::string_view> fields_;  // of all records, one after the other
  std::vector<Record> records_;
};

}  // namespace genostat::standalone
