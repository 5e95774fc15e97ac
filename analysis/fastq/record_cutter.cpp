#include "analysis/fastq/record_cutter.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <utility>

namespace genostat::analysis {

namespace {

// A seam that held a longer record gives its memory back; shorter ones are used again.
constexpr std::size_t kLargestKeptSeam = std::size_t{4} << 20;

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

// A first base followed by colours (digits) and missing colours (dots).
bool isColourSpace(std::string_view sequence) {
  if (sequence.size() < 2 || isDigit(sequence[0])) return false;
  sequence.remove_prefix(1);
  return std::any_of(sequence.begin(), sequence.end(), isDigit) &&
         std::all_of(sequence.begin(), sequence.end(), [](char c) { return isDigit(c) || c == '.'; });
}

}  // namespace

void RecordCutter::cut(Batch& batch, bool last) {
  batch.records.clear();
  batch.error.reset();
  batch.recordsBefore = records_;
  batch.filledBefore = filled_;
  batch.longestBefore = longest_;
  if (batch.seam.capacity() > kLargestKeptSeam) batch.seam = TextBuffer();
  batch.records.reserve(batch.lineFeedCount / 4 + 2);

  const Chunk& chunk = batch.chunk;
  Place place;
  if (carriedSize_ > 0) place = join(batch);
  if (!batch.error) place = walk(batch, place);
  records_ += batch.records.size();
  if (batch.error) return;

  // Either the carried record took in the whole chunk, or the chunk's end begins the next one.
  Begun begun{carried_.data(), 0, carriedSize_, carriedEnds_, carriedLines_};
  const bool inChunk = carriedSize_ == 0;
  if (inChunk) {
    begun = {chunk.text.data(), place.at, chunk.size, {}, batch.lineFeedCount - place.feed};
    std::copy_n(batch.lineFeeds.get() + place.feed, begun.lines, begun.lineEnds.begin());
  }
  // Before the record is complete: a file of another kind may have no line ends at all.
  if (!checkBegun(batch, begun)) return;
  if (!chunk.defect.empty()) {
    fail(batch, begun.lines, chunk.defect);
  } else if (last) {
    finish(batch, begun);
  } else if (inChunk) {
    carry(begun);
  }
}

// Puts the chunk's text behind the carried text as far as the record reaches; then the record is complete
// and in the seam, or carried on.
RecordCutter::Place RecordCutter::join(Batch& batch) {
  const char* const text = batch.chunk.text.data();
  const std::size_t size = batch.chunk.size;
  if (carriedSize_ == 1 && carried_.data()[0] == '\r' && size > 0 && text[0] == '\n') {
    carriedSize_ = 0;
    ++line_;
    return {1, 1};
  }
  const std::size_t before = carriedSize_;
  const std::size_t missing = carriedEnds_.size() - carriedLines_;
  const std::size_t feeds = std::min(missing, batch.lineFeedCount);
  for (std::size_t i = 0; i < feeds; ++i) {
    carriedEnds_[carriedLines_++] = before + batch.lineFeeds[i];
  }
  if (feeds < missing) {
    append(text, size);
    return {size, batch.lineFeedCount};
  }
  const std::size_t end = batch.lineFeeds[feeds - 1] + std::size_t{1};
  append(text, end);
  std::swap(carried_, batch.seam);
  carriedSize_ = 0;
  carriedLines_ = 0;
  take(batch, batch.seam.data(), 0, carriedEnds_);
  return {end, feeds};
}

// Cuts the records that lie whole in the chunk and returns the place behind them and behind blank lines.
RecordCutter::Place RecordCutter::walk(Batch& batch, Place place) {
  const char* const text = batch.chunk.text.data();
  const std::uint32_t* const feeds = batch.lineFeeds.get();
  const std::size_t count = batch.lineFeedCount;
  const auto skipBlankLine = [&] {
    const std::size_t length = feeds[place.feed] - place.at;
    if (length > 1 || (length == 1 && text[place.at] != '\r')) return false;
    place = {feeds[place.feed] + std::size_t{1}, place.feed + 1};
    ++line_;
    return true;
  };
  while (count - place.feed >= 4) {
    const std::uint32_t* const ends = feeds + place.feed;
    if (text[place.at] != '@' && skipBlankLine()) continue;
    if (!take(batch, text, place.at, {ends[0], ends[1], ends[2], ends[3]})) return place;
    place = {ends[3] + std::size_t{1}, place.feed + 4};
  }
  while (place.feed < count && skipBlankLine()) {
  }
  return place;
}

// Adds a complete record to the batch. A line's end is behind a byte of the same text: the header is not
// empty, and the others follow a line feed.
inline bool RecordCutter::take(Batch& batch, const char* text, std::size_t begin, const LineEnds& ends) {
  const auto line = [&](std::size_t from, std::size_t to) {
    return std::string_view(text + from, to - from - (text[to - 1] == '\r' ? 1U : 0U));
  };
  if (text[begin] != '@' || text[ends[1] + 1] != '+') [[unlikely]] {
    return checkBegun(batch, {text, begin, ends[3], ends, 3});
  }
  const Record record{line(begin, ends[0]), line(ends[0] + 1, ends[1]), line(ends[2] + 1, ends[3]), line_};
  const std::size_t length = record.sequence.size();
  // Almost every read is decided by its second character.
  if (length > 1 && record.sequence[1] <= '9' && isColourSpace(record.sequence)) [[unlikely]] {
    return fail(
        batch, 1,
        "the read is in colour space (a base followed by digits); only reads of bases can be analysed");
  }
  if (record.quality.size() != length) [[unlikely]] {
    return fail(batch, 3,
                "the quality has " + std::to_string(record.quality.size()) + " characters, the sequence " +
                    std::to_string(length));
  }
  batch.records.push_back(record);
  line_ += 4;
  filled_ += length > 0 ? 1U : 0U;
  longest_ = std::max<std::uint64_t>(longest_, length);
  return true;
}

// What can be said of a record by the lines that have begun.
bool RecordCutter::checkBegun(Batch& batch, const Begun& begun) const {
  if (begun.begin == begun.end) return true;
  const char header = begun.text[begun.begin];
  // A carriage return may have its line feed still to come, or end the file.
  const bool blankSoFar = header == '\r' && begun.begin + 1 == begun.end;
  if (header != '@' && !blankSoFar) {
    return fail(batch, 0, "the header starts with " + characterText(header) + " instead of '@'");
  }
  if (begun.lines < 2 || begun.lineEnds[1] + 1 == begun.end) return true;
  const char third = begun.text[begun.lineEnds[1] + 1];
  if (third == '+') return true;
  return fail(batch, 2, "the third line starts with " + characterText(third) + " instead of '+'");
}

void RecordCutter::carry(const Begun& begun) {
  append(begun.text + begun.begin, begun.end - begun.begin);
  carriedLines_ = begun.lines;
  for (std::size_t i = 0; i < begun.lines; ++i) {
    carriedEnds_[i] = begun.lineEnds[i] - begun.begin;
  }
}

// The end of the file ends the last line, too.
void RecordCutter::finish(Batch& batch, Begun begun) {
  const std::size_t lineBegin = begun.lines == 0 ? begun.begin : begun.lineEnds[begun.lines - 1] + 1;
  const bool endlessLine = lineBegin < begun.end;
  if (endlessLine) begun.lineEnds[begun.lines++] = begun.end;
  if (begun.lines == 1 && begun.text[begun.begin] == '\r') {
    ++line_;
    begun.lines = 0;
  }
  if (begun.lines == 0) {
    if (records_ > 0) return;
    batch.error = FastqError(line_ == 1 ? "the file is empty" : "the file holds no records");
    return;
  }
  const auto isEmpty = [&](std::size_t from, std::size_t to) {
    return from == to || (from + 1 == to && begun.text[from] == '\r');
  };
  // An empty quality may be the last line that ends without a line feed.
  if (begun.lines == 3 && !endlessLine && isEmpty(begun.lineEnds[0] + 1, begun.lineEnds[1])) {
    begun.lineEnds[begun.lines++] = begun.end;
  }
  if (begun.lines < begun.lineEnds.size()) {
    static constexpr std::array<const char*, 4> kNames = {"header", "sequence", "'+' line", "quality"};
    fail(batch, begun.lines,
         std::string("the file ends inside the record, before its ") + kNames[begun.lines]);
    return;
  }
  if (begun.text == carried_.data()) {
    std::swap(carried_, batch.seam);
    begun.text = batch.seam.data();
  }
  if (take(batch, begun.text, begun.begin, begun.lineEnds)) ++records_;
}

// Twice the memory when it is full: a record of any length is copied a constant number of times.
void RecordCutter::append(const char* text, std::size_t size) {
  if (size == 0) return;
  if (carriedSize_ + size > carried_.capacity()) {
    carried_.reserve(std::max(carriedSize_ + size, 2 * carried_.capacity()), carriedSize_);
  }
  std::memcpy(carried_.data() + carriedSize_, text, size);
  carriedSize_ += size;
}

bool RecordCutter::fail(Batch& batch, std::size_t line, const std::string& sentence) const {
  batch.error = FastqError(batch.recordsBefore + batch.records.size() + 1, line_ + line, sentence);
  return false;
}

}  // namespace genostat::analysis
