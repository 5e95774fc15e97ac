// A record is scanned in one go from the buffer. When the buffer ends before the record does,
// the record's bytes move to the front, the buffer is filled up (or doubled, when the record
// takes all of it), and the scan starts again at the record's begin; so every byte is scanned
// a bounded number of times, and only records longer than a chunk cost memory.

#include "standalone/data/record_reader.h"

#include <algorithm>
#include <utility>

namespace genostat::standalone {

namespace {

constexpr std::size_t kChunk = std::size_t{1} << 20;
// A quote that is never closed would otherwise pull a whole large file into memory.
constexpr std::size_t kLongestRecord = std::size_t{64} << 20;

std::string inLine(std::size_t line) {
  return "line " + std::to_string(line) + ": ";
}

}  // namespace

RecordReader::RecordReader(std::istream& input, const DelimitedFormat& format)
    : input_(input), qualifier_(format.qualifier) {
  stops_[static_cast<unsigned char>('\n')] = true;
  for (const char delimiter : format.delimiters) {
    stops_[static_cast<unsigned char>(delimiter)] = true;
  }
  readMore();
  checkByteOrderMark();
}

bool RecordReader::next() {
  line_ = nextLine_;
  if (position_ == buffer_.size() && (atEnd_ || !readMore())) return false;
  while (!scanRecord()) {
    readMore();
  }
  fields_.clear();
  for (const FieldRange& range : ranges_) {
    const std::string& bytes = range.inUnquoted ? unquoted_ : buffer_;
    fields_.emplace_back(bytes.data() + range.begin, range.end - range.begin);
  }
  nextLine_ += 1 + lineFeedsInQuotes_;
  return true;
}

// False when the record goes on beyond the buffer and the stream has more.
bool RecordReader::scanRecord() {
  ranges_.clear();
  unquoted_.clear();
  lineFeedsInQuotes_ = 0;
  anyQuoted_ = false;
  for (std::size_t position = position_;; ++position) {
    if (qualifier_ && position < buffer_.size() && buffer_[position] == *qualifier_) {
      if (!scanQuotedField(position)) return false;
    } else {
      const std::size_t begin = position;
      position = findStop(position);
      finishField(begin, position);
    }
    const bool bufferEnds = position == buffer_.size();
    if (bufferEnds && !atEnd_) return false;
    if (bufferEnds || buffer_[position] == '\n') {
      position_ = std::min(position + 1, buffer_.size());
      return true;
    }
  }
}

// From the opening qualifier to the stop behind the field.
bool RecordReader::scanQuotedField(std::size_t& position) {
  anyQuoted_ = true;
  const std::size_t unquotedBegin = unquoted_.size();
  const std::size_t begin = ++position;
  while (true) {
    const std::size_t quote = buffer_.find(*qualifier_, position);
    if (quote == std::string::npos) {
      if (atEnd_) throw ImportError(inLine(line_ + lineFeedsInQuotes_) + "a quoted value is not closed");
      return false;
    }
    unquoted_.append(buffer_, position, quote - position);
    position = quote + 1;
    if (position == buffer_.size() && !atEnd_) return false;
    if (position == buffer_.size() || buffer_[position] != *qualifier_) break;
    unquoted_ += *qualifier_;
    ++position;
  }
  lineFeedsInQuotes_ += static_cast<std::size_t>(
      std::ranges::count(buffer_.begin() + static_cast<std::ptrdiff_t>(begin),
                         buffer_.begin() + static_cast<std::ptrdiff_t>(position), '\n'));
  const std::size_t stop = findStop(position);
  finishField(position, stop);
  // Text behind the closing qualifier joins what stood inside.
  const FieldRange tail = ranges_.back();
  unquoted_.append(buffer_, tail.begin, tail.end - tail.begin);
  ranges_.back() = {unquotedBegin, unquoted_.size(), true};
  position = stop;
  return true;
}

// A carriage return before the line's end belongs to the line's end.
void RecordReader::finishField(std::size_t begin, std::size_t end) {
  const bool lineEnds = end == buffer_.size() || buffer_[end] == '\n';
  if (lineEnds && end > begin && buffer_[end - 1] == '\r') --end;
  ranges_.push_back({begin, end, false});
}

std::size_t RecordReader::findStop(std::size_t position) const {
  while (position < buffer_.size() && !stops_[static_cast<unsigned char>(buffer_[position])]) {
    ++position;
  }
  return position;
}

// Fills the buffer behind the record that has begun; false when nothing came.
bool RecordReader::readMore() {
  if (atEnd_) return false;
  buffer_.erase(0, position_);
  position_ = 0;
  const std::size_t kept = buffer_.size();
  if (kept >= kLongestRecord)
    throw ImportError(inLine(line_) + "a line or a quoted value is longer than 64 MiB");
  buffer_.resize(kept + std::max(kChunk, kept));
  input_.read(buffer_.data() + kept, static_cast<std::streamsize>(buffer_.size() - kept));
  const auto count = static_cast<std::size_t>(input_.gcount());
  buffer_.resize(kept + count);
  if (input_.bad() || (count == 0 && !input_.eof())) throw ImportError(inLine(nextLine_) + "reading failed");
  atEnd_ = input_.eof();
  return count > 0;
}

void RecordReader::checkByteOrderMark() {
  if (buffer_.starts_with("\xEF\xBB\xBF")) position_ = 3;
  if (buffer_.starts_with("\xFF\xFE") || buffer_.starts_with("\xFE\xFF")) {
    throw ImportError("line 1: the text is UTF-16, not UTF-8");
  }
}

}  // namespace genostat::standalone
