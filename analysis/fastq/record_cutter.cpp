#include "analysis/fastq/record_cutter.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <utility>

#include "common/text/ascii.h"

namespace genostat::analysis {

namespace {

// A seam that held a longer record gives its memory back; shorter ones are used again.
constexpr std::size_t kLargestKeptSeam = std::size_t{4} << 20;

// A header beyond that is none; without a limit a file of another kind would be read into memory.
constexpr std::size_t kLongestHeader = std::size_t{1} << 20;

// A first base followed by colours (digits) and missing colours (dots).
bool isColourSpace(std::string_view sequence) {
  if (sequence.size() < 2 || common::isDigit(sequence[0])) return false;
  sequence.remove_prefix(1);
  return std::any_of(sequence.begin(), sequence.end(), common::isDigit) &&
         std::all_of(sequence.begin(), sequence.end(), [](char c) { return common::isDigit(c) || c == '.'; });
}

// Every line's end has a byte of the same text before it: the header is not empty, and the other lines
// follow a line feed.
inline std::string_view lineOf(const char* text, std::size_t from, std::size_t to) {
  return {text + from, to - from - (text[to - 1] == '\r' ? 1U : 0U)};
}

}  // namespace

void RecordCutter::cut(Batch& batch, bool last) {
  batch.error.reset();
  batch.recordsBefore = tally_.records;
  batch.filledBefore = tally_.filled;
  batch.longestBefore = tally_.longest;
  if (batch.seam.capacity() > kLargestKeptSeam) batch.seam = TextBuffer();
  // Room for all there can be; the records of an earlier chunk are overwritten.
  batch.records.resize(batch.lineFeedCount / 4 + 2);
  cutChunk(batch, last);
  batch.records.resize(tally_.records - batch.recordsBefore);
}

void RecordCutter::cutChunk(Batch& batch, bool last) {
  const Chunk& chunk = batch.chunk;
  Place place;
  if (carriedSize_ > 0) place = join(batch);
  if (!batch.error) place = walk(batch, place);
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

// Puts the chunk's text after the carried text as far as the record reaches; then the record is complete
// and in the seam, or carried on.
RecordCutter::Place RecordCutter::join(Batch& batch) {
  const char* const text = batch.chunk.text.data();
  const std::size_t size = batch.chunk.size;
  if (carriedSize_ == 1 && carried_.data()[0] == '\r' && size > 0 && text[0] == '\n') {
    carriedSize_ = 0;
    ++tally_.line;
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

// Cuts the records that lie whole in the chunk and returns the place after them and after blank lines.
RecordCutter::Place RecordCutter::walk(Batch& batch, Place place) {
  const char* const text = batch.chunk.text.data();
  const std::uint32_t* const feeds = batch.lineFeeds.get();
  const std::size_t count = batch.lineFeedCount;
  // Copies, so that they stay in registers.
  Tally tally = tally_;
  Record* record = batch.records.data() + (tally.records - batch.recordsBefore);
  const auto skipBlankLine = [&] {
    const std::size_t length = feeds[place.feed] - place.at;
    if (length > 1 || (length == 1 && text[place.at] != '\r')) return false;
    place = {feeds[place.feed] + std::size_t{1}, place.feed + 1};
    ++tally.line;
    return true;
  };
  while (count - place.feed >= 4) {
    if (text[place.at] != '@' && skipBlankLine()) continue;
    const std::uint32_t* const next = feeds + place.feed;
    const LineEnds ends = {next[0], next[1], next[2], next[3]};
    if (!makeRecord(text, place.at, ends, tally.line, *record)) [[unlikely]] {
      tally_ = tally;
      if (!checkRecord(batch, {text, place.at, ends[3], ends, 3}, *record)) return place;
    }
    tally.add(record->sequence.size());
    ++record;
    place = {ends[3] + 1, place.feed + 4};
  }
  while (place.feed < count && skipBlankLine()) {
  }
  tally_ = tally;
  return place;
}

// False when it needs a second look.
inline bool RecordCutter::makeRecord(const char* text, std::size_t begin, const LineEnds& ends,
                                     std::uint64_t line, Record& record) {
  // Made where it stays: copying it there would take longer than all the rest.
  record.header = lineOf(text, begin, ends[0]);
  record.sequence = lineOf(text, ends[0] + 1, ends[1]);
  record.quality = lineOf(text, ends[2] + 1, ends[3]);
  record.line = line;
  const std::size_t length = record.sequence.size();
  // A read of colours shows in its second character.
  return text[begin] == '@' && ends[0] - begin <= kLongestHeader && text[ends[1] + 1] == '+' &&
         record.quality.size() == length && (length < 2 || record.sequence[1] > '9');
}

// Cuts a single record, whose lines are complete.
bool RecordCutter::take(Batch& batch, const char* text, std::size_t begin, const LineEnds& ends) {
  Record& record = batch.records[tally_.records - batch.recordsBefore];
  if (!makeRecord(text, begin, ends, tally_.line, record) &&
      !checkRecord(batch, {text, begin, ends[3], ends, 3}, record))
    return false;
  tally_.add(record.sequence.size());
  return true;
}

bool RecordCutter::checkRecord(Batch& batch, const Begun& begun, const Record& record) const {
  if (!checkBegun(batch, begun)) return false;
  if (isColourSpace(record.sequence)) {
    return fail(
        batch, 1,
        "the read is in colour space (a base followed by digits); only reads of bases can be analysed");
  }
  if (record.quality.size() == record.sequence.size()) return true;
  return fail(batch, 3,
              "the quality has " + std::to_string(record.quality.size()) + " characters, the sequence " +
                  std::to_string(record.sequence.size()));
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
  const std::size_t headerEnd = begun.lines == 0 ? begun.end : begun.lineEnds[0];
  if (headerEnd - begun.begin > kLongestHeader) {
    return fail(batch, 0, "the header has more than " + std::to_string(kLongestHeader) + " characters");
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
  if (lineBegin < begun.end) begun.lineEnds[begun.lines++] = begun.end;
  if (begun.lines == 1 && begun.text[begun.begin] == '\r') {
    ++tally_.line;
    begun.lines = 0;
  }
  if (begun.lines == 0) {
    if (tally_.records > 0 || (mayBeEmpty_ && tally_.line == 1)) return;
    batch.error = FastqError(tally_.line == 1 ? "the file is empty" : "the file holds no records");
    return;
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
  take(batch, begun.text, begun.begin, begun.lineEnds);
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
  batch.error = FastqError(tally_.records + 1, tally_.line + line, sentence);
  return false;
}

}  // namespace genostat::analysis
