#include "results/csv_counts.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <span>

#include "platform/files.h"

namespace genostat {

namespace {

// What is to be known of a line, which may be of any length.
struct Line {
  std::uint64_t length = 0;
  std::uint64_t commas = 0;
  char last = '\0';
  char beforeLast = '\0';

  void add(char c) {
    ++length;
    if (c == ',') ++commas;
    beforeLast = last;
    last = c;
  }
  // A CR at the end of the file belongs to the line; one before an LF does not.
  void end() {
    if (length == 0 || last != '\r') return;
    --length;
    last = beforeLast;
  }
  std::uint64_t fields() const { return length == 0 ? 0 : commas + (last == ',' ? 0 : 1); }
};

std::int32_t clamped(std::uint64_t count) {
  return static_cast<std::int32_t>(std::min<std::uint64_t>(count, std::numeric_limits<std::int32_t>::max()));
}

}  // namespace

std::optional<CsvCounts> countCsv(const char* path) {
  const auto file = platform::openRegularFile(path);
  if (!file) return std::nullopt;
  Line line;
  bool inHeader = true;
  std::uint64_t samples = 0;
  std::uint64_t variables = 0;
  const auto finishLine = [&] {
    if (inHeader) {
      variables = line.fields();
    } else if (line.length > 0) {
      ++samples;
    }
    inHeader = false;
    line = {};
  };
  std::array<char, 65536> buffer;
  while (const std::size_t size = std::fread(buffer.data(), 1, buffer.size(), file.get())) {
    for (const char c : std::span(buffer.data(), size)) {
      if (c == '\n') {
        line.end();
        finishLine();
      } else {
        line.add(c);
      }
    }
  }
  finishLine();
  return CsvCounts{clamped(samples), clamped(variables)};
}

}  // namespace genostat
