// Delimited text, record by record.
#pragma once

#include <array>
#include <cstddef>
#include <istream>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace genostat::standalone {

// A data file that cannot be read; the message names the line, not the file.
struct ImportError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

struct DelimitedFormat {
  std::string delimiters = ",";         // each byte separates fields
  std::optional<char> qualifier = '"';  // encloses fields that hold delimiters, line ends or itself, doubled
};

// Reads UTF-8 with or without a byte order mark, lines ending in LF or CR LF, in chunks; holds one
// chunk and the record that goes on beyond it. A qualifier inside an unquoted field is plain text,
// and text behind a closing qualifier belongs to the field. Borrows the stream.
class RecordReader {
 public:
  RecordReader(std::istream& input, const DelimitedFormat& format);

  // Steps to the next record; false behind the last one. Throws ImportError.
  bool next();

  // The record's fields, valid until the next step.
  std::span<const std::string_view> fields() const { return fields_; }
  // Where the record begins, counted from 1.
  std::size_t line() const { return line_; }
  // Nothing at all stands in the line.
  bool isBlankLine() const { return fields_.size() == 1 && fields_.front().empty() && !anyQuoted_; }

 private:
  // A field's bytes: in the buffer, or in `unquoted_` when quotes had to be undone.
  struct FieldRange {
    std::size_t begin;
    std::size_t end;
    bool inUnquoted;
  };

  bool scanRecord();
  bool scanQuotedField(std::size_t& position);
  void finishField(std::size_t begin, std::size_t end);
  std::size_t findStop(std::size_t position) const;
  bool readMore();
  void checkByteOrderMark();

  std::istream& input_;
  std::optional<char> qualifier_;
  std::array<bool, 256> stops_{};  // delimiters and LF
  std::string buffer_;
  std::size_t position_ = 0;  // the next record's begin
  bool atEnd_ = false;        // the stream holds nothing more
  std::size_t line_ = 0;
  std::size_t nextLine_ = 1;
  std::size_t lineFeedsInQuotes_ = 0;
  bool anyQuoted_ = false;
  std::string unquoted_;
  std::vector<FieldRange> ranges_;
  std::vector<std::string_view> fields_;
};

}  // namespace genostat::standalone
