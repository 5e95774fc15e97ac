#include "analysis/fastq/record_reader.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace genostat::analysis {

namespace {

// A character as a message shows it.
std::string describe(char c) {
  if (c == '\n' || c == '\r') return "a line end";
  const auto code = static_cast<unsigned char>(c);
  if (code > ' ' && code <= '~') return std::string("'") + c + "'";
  return "character code " + std::to_string(code);
}

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

// A first base followed by colours (digits) and missing colours (dots).
bool isColourSpace(std::string_view sequence) {
  // Almost every read is decided by its second character.
  if (sequence.size() < 2 || !(isDigit(sequence[1]) || sequence[1] == '.') || isDigit(sequence[0]))
    return false;
  sequence.remove_prefix(1);
  return std::any_of(sequence.begin(), sequence.end(), isDigit) &&
         std::all_of(sequence.begin(), sequence.end(), [](char c) { return isDigit(c) || c == '.'; });
}

bool isQuality(char c) {
  return c >= '!' && c <= '~';
}

// The same for a whole line, without a branch per character, so that it can be vectorised.
bool areQualities(std::string_view quality) {
  unsigned char outside = 0;
  for (const char c : quality) {
    outside |= static_cast<unsigned char>(static_cast<unsigned char>(c - '!') > '~' - '!');
  }
  return outside == 0;
}

std::string_view withoutCarriageReturn(std::string_view line) {
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

}  // namespace

RecordReader::RecordReader(ByteSource& source, std::size_t bufferSize)
    : source_(source),
      capacity_(bufferSize),
      buffer_(std::make_unique_for_overwrite<char[]>(bufferSize + 1)) {}

std::span<const Record> RecordReader::next() {
  batch_.clear();
  while (true) {
    while (cutRecord()) {
    }
    if (!batch_.empty()) return batch_;
    if (atEnd_) break;
    refill();
  }
  if (!sourceDefect_.empty()) fail(stopLine_, sourceDefect_);
  if (records_ == 0) throw FastqError(line_ == 1 ? "the file is empty" : "the file holds no records");
  return {};
}

bool RecordReader::cutRecord() {
  skipBlankLines();
  const char* const end = buffer_.get() + end_;
  const char* at = buffer_.get() + begin_;
  std::array<std::string_view, 4> lines;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const std::uint64_t line = line_ + i;
    stopLine_ = line;
    if (at == end) {
      if (!atEnd_ || !sourceDefect_.empty() || i == 0) return false;
      // An empty quality line may be the last line that ends without a line feed.
      if (i == 3 && lines[1].empty() && !endlessLine_) break;
      static constexpr std::array<const char*, 4> kNames = {"header", "sequence", "'+' line", "quality"};
      fail(line, std::string("the file ends inside the record, before its ") + kNames[i]);
    }
    // A carriage return that has its line feed still to come is a blank line.
    if (i == 0 && *at == '\r' && at + 1 == end) return false;
    // Checked before the line's end is known: a file of another kind may have no line ends at all.
    if (i == 0 && *at != '@') fail(line, "the header starts with " + describe(*at) + " instead of '@'");
    if (i == 2 && *at != '+') fail(line, "the third line starts with " + describe(*at) + " instead of '+'");
    const void* lineFeed = std::memchr(at, '\n', static_cast<std::size_t>(end - at));
    if (lineFeed == nullptr) return false;
    const char* const lineEnd = static_cast<const char*>(lineFeed);
    lines[i] = withoutCarriageReturn({at, static_cast<std::size_t>(lineEnd - at)});
    at = lineEnd + 1;
  }
  const Record record{lines[0], lines[1], lines[3]};
  checkRecord(record, line_);
  batch_.push_back(record);
  begin_ = static_cast<std::size_t>(at - buffer_.get());
  line_ += 4;
  ++records_;
  return true;
}

void RecordReader::skipBlankLines() {
  const auto is = [&](std::size_t at, char c) { return at < end_ && buffer_[at] == c; };
  while (is(begin_, '\n') || (is(begin_, '\r') && is(begin_ + 1, '\n'))) {
    begin_ += buffer_[begin_] == '\n' ? 1U : 2U;
    ++line_;
  }
}

void RecordReader::checkRecord(const Record& record, std::uint64_t line) const {
  if (isColourSpace(record.sequence)) {
    fail(line + 1,
         "the read is in colour space (a base followed by digits); only reads of bases can be analysed");
  }
  if (record.sequence.size() != record.quality.size()) {
    fail(line + 3, "the quality has " + std::to_string(record.quality.size()) + " characters, the sequence " +
                       std::to_string(record.sequence.size()));
  }
  if (!areQualities(record.quality)) {
    const auto wrong = std::find_if_not(record.quality.begin(), record.quality.end(), isQuality);
    fail(line + 3, "the quality has " + describe(*wrong) + " at position " +
                       std::to_string(wrong - record.quality.begin() + 1) + "; allowed are '!' to '~'");
  }
}

void RecordReader::refill() {
  const std::size_t left = end_ - begin_;
  // Not only when it is full: an unfinished long record is scanned again after every block.
  if (left > capacity_ / 2) {
    auto larger = std::make_unique_for_overwrite<char[]>(2 * capacity_ + 1);
    std::memcpy(larger.get(), buffer_.get() + begin_, left);
    buffer_ = std::move(larger);
    capacity_ *= 2;
  } else {
    std::memmove(buffer_.get(), buffer_.get() + begin_, left);
  }
  begin_ = 0;
  end_ = left;
  try {
    while (end_ < capacity_) {
      const std::size_t size = source_.read({buffer_.get() + end_, capacity_ - end_});
      if (size == 0) {
        atEnd_ = true;
        break;
      }
      end_ += size;
    }
  } catch (const SourceError& error) {
    // Told only after the records that came before it.
    atEnd_ = true;
    sourceDefect_ = error.what();
    return;
  }
  if (atEnd_ && end_ > 0 && buffer_[end_ - 1] != '\n') {
    buffer_[end_++] = '\n';
    endlessLine_ = true;
  }
}

void RecordReader::fail(std::uint64_t line, const std::string& sentence) const {
  throw FastqError(records_ + 1, line, sentence);
}

}  // namespace genostat::analysis
