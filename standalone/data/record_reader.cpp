// A record is scanned in one go from the buffer. When the buffer ends before the record does,
// the record's bytes move to the front, the buffer is filled up (or doubled, when the record
// takes all of it), and the scan starts again at the record's begin; so every byte is scanned
// a bounded number of times, and only records longer than a chunk cost memory.

#include "standalone/data/record_reader.h"
#include "standalone/language/translation.h"

#include <algorithm>
#include <cstring>

#include "standalone/data/number_text.h"

namespace genostat::standalone {

namespace {

// A part of the second-level cache: what was read is scanned from there.
constexpr std::size_t kChunk = std::size_t{256} << 10;
// Few enough that their fields stay in the first-level cache.
constexpr std::size_t kBatch = 64;
// A quote that is never closed would otherwise pull a whole large file into memory.
constexpr std::size_t kLongestRecord = std::size_t{64} << 20;
constexpr std::size_t kPadding = std::max(kStopPadding, kNumberPadding);

std::vector<std::uint64_t> eachInEveryByte(std::string_view delimiters) {
  std::vector<std::uint64_t> words;
  for (const char delimiter : delimiters) {
    words.push_back(StopFinder::inEveryByte(delimiter));
  }
  return words;
}

// A carriage return before the line's end belongs to the line's end.
const char* fieldEnd(const char* begin, const char* stop) {
  return *stop == '\n' && stop > begin && stop[-1] == '\r' ? stop - 1 : stop;
}

ImportError faultIn(std::size_t line, const std::string& fault) {
  return ImportError(translated("line {1}: {2}", {std::to_string(line), fault}));
}

}  // namespace

RecordReader::RecordReader(std::istream& input, const DelimitedFormat& format)
    : input_(input),
      qualifier_(format.qualifier),
      delimiters_(eachInEveryByte(format.delimiters)),
      stops_(delimiters_) {
  readMore();
  checkByteOrderMark();
}

std::span<const Record> RecordReader::next() {
  fields_.clear();
  unquoted_.clear();
  unquotedFields_.clear();
  records_.clear();
  while (records_.size() < kBatch) {
    if (position_ == size_ && (!records_.empty() || atEnd_ || !readMore())) break;
    if (scanRecord()) continue;
    // Reading on moves what the fields of the records before point to.
    if (!records_.empty()) break;
    readMore();
  }
  finishBatch();
  return records_;
}

// Neither the fields nor the unquoted text moves any more.
void RecordReader::finishBatch() {
  if (!unquotedFields_.empty()) unquoted_.append(kNumberPadding, '\0');
  for (const UnquotedField& field : unquotedFields_) {
    fields_[field.field] = std::string_view(unquoted_).substr(field.begin, field.end - field.begin);
  }
  const std::string_view* first = fields_.data();
  for (Record& record : records_) {
    record.fields = {first, record.fields.size()};
    first += record.fields.size();
  }
}

// Adds a record; false when it goes on beyond the buffer and the stream has more.
bool RecordReader::scanRecord() {
  const char* const begin = buffer_.data() + position_;
  const char* const textEnd = buffer_.data() + size_;
  const std::size_t firstField = fields_.size();
  lineFeedsInQuotes_ = 0;
  StopFinder stops = stops_;  // in registers, not reached through a pointer
  const char* stop = nullptr;
  for (const char* field = begin;; field = stop + 1) {
    if (qualifier_ && *field == *qualifier_) {
      stops_ = stops;
      stop = scanQuotedField(field);
      stops = stops_;
      if (stop == nullptr) break;
    } else {
      stop = stops.next();
      fields_.emplace_back(field, static_cast<std::size_t>(fieldEnd(field, stop) - field));
    }
    if (*stop == '\n') break;
  }
  const bool isWhole = stop != nullptr && (stop < textEnd || atEnd_);
  if (!isWhole) {
    stops_.seek(begin);
    fields_.resize(firstField);
    while (!unquotedFields_.empty() && unquotedFields_.back().field >= firstField) {
      unquotedFields_.pop_back();
    }
    return false;
  }
  stops_ = stops;
  const std::size_t count = fields_.size() - firstField;
  const bool isBlank = count == 1 && fields_.back().empty() && *begin != qualifier_;
  records_.push_back({line_, {fields_.data(), count}, isBlank});
  line_ += 1 + lineFeedsInQuotes_;
  position_ = std::min(static_cast<std::size_t>(stop - buffer_.data()) + 1, size_);
  return true;
}

// From the opening qualifier to the stop after the field, or to null when the text ends before.
const char* RecordReader::scanQuotedField(const char* qualifier) {
  const char* const textEnd = buffer_.data() + size_;
  const std::size_t unquotedBegin = unquoted_.size();
  const char* const begin = qualifier + 1;
  const char* part = begin;  // after the last doubled qualifier
  const char* quote = nullptr;
  for (const char* position = begin;; position = part) {
    quote = static_cast<const char*>(
        std::memchr(position, *qualifier_, static_cast<std::size_t>(textEnd - position)));
    if (quote == nullptr) {
      if (atEnd_) throw faultIn(line_ + lineFeedsInQuotes_, translated("a quoted value is not closed"));
      return nullptr;
    }
    if (quote + 1 == textEnd || quote[1] != *qualifier_) break;
    unquoted_.append(part, quote + 1);
    part = quote + 2;
  }
  lineFeedsInQuotes_ += static_cast<std::size_t>(std::count(begin, quote, '\n'));
  const char* const tail = quote + 1;
  stops_.skipTo(tail);
  const char* const stop = stops_.next();
  const char* const end = fieldEnd(tail, stop);
  fields_.emplace_back(begin, static_cast<std::size_t>(quote - begin));
  if (part != begin || end != tail) {
    // Text after the closing qualifier joins what stood inside.
    unquoted_.append(part, quote).append(tail, end);
    unquotedFields_.push_back({fields_.size() - 1, unquotedBegin, unquoted_.size()});
  }
  return stop;
}

// Fills the buffer after the record that has begun; false when nothing came.
bool RecordReader::readMore() {
  if (atEnd_) return false;
  const std::size_t kept = size_ - position_;
  if (kept >= kLongestRecord)
    throw faultIn(line_, translated("a line or a quoted value is longer than 64 MiB"));
  if (kept > 0) std::memmove(buffer_.data(), buffer_.data() + position_, kept);
  discarded_ += position_;
  position_ = 0;
  const std::size_t wanted = std::max(kChunk, kept);
  if (buffer_.size() < kept + wanted + kPadding) buffer_.resize(kept + wanted + kPadding);
  input_.read(buffer_.data() + kept, static_cast<std::streamsize>(wanted));
  const auto count = static_cast<std::size_t>(input_.gcount());
  size_ = kept + count;
  std::fill_n(buffer_.begin() + static_cast<std::ptrdiff_t>(size_), kPadding, '\n');
  if (input_.bad() || (count == 0 && !input_.eof())) throw faultIn(line_, translated("reading failed"));
  atEnd_ = input_.eof();
  stops_.seek(buffer_.data());
  return count > 0;
}

void RecordReader::checkByteOrderMark() {
  const std::string_view begin(buffer_.data(), size_);
  if (begin.starts_with("\xEF\xBB\xBF")) {
    position_ = 3;
    stops_.skipTo(buffer_.data() + position_);
  }
  if (begin.starts_with("\xFF\xFE") || begin.starts_with("\xFE\xFF")) {
    throw faultIn(1, translated("the text is UTF-16, not UTF-8"));
  }
}

}  // namespace genostat::standalone
