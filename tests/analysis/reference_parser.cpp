#include "tests/analysis/reference_parser.h"

namespace genostat::test {

namespace {

std::string shown(const std::string& line) {
  if (line.empty() || line[0] == '\r') return "a line end";
  const int code = static_cast<unsigned char>(line[0]);
  if (code <= 32 || code > 126) return "character code " + std::to_string(code);
  return "'" + line.substr(0, 1) + "'";
}

bool isColours(const std::string& sequence) {
  const std::string rest = sequence.empty() ? "" : sequence.substr(1);
  return !rest.empty() && rest.find_first_not_of("0123456789.") == std::string::npos &&
         rest.find_first_not_of(".") != std::string::npos &&
         std::string("0123456789").find(sequence[0]) == std::string::npos;
}

}  // namespace

ReferenceResult parseSlowly(std::string_view text) {
  std::vector<std::string> lines(1);
  for (const char c : text) {
    if (c == '\n') {
      lines.emplace_back();
    } else {
      lines.back() += c;
    }
  }
  if (lines.back().empty()) lines.pop_back();
  for (std::string& line : lines) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
  }

  ReferenceResult result;
  std::size_t at = 0;
  const auto fail = [&](std::size_t line, const std::string& what) {
    result.error = "record " + std::to_string(result.records.size() + 1) + ", line " +
                   std::to_string(at + line + 1) + ": " + what;
    return result;
  };
  for (; at < lines.size(); at += 4) {
    while (at < lines.size() && lines[at].empty()) {
      ++at;
    }
    if (at == lines.size()) break;
    const std::size_t left = lines.size() - at;
    if (lines[at][0] != '@') return fail(0, "the header starts with " + shown(lines[at]) + " instead of '@'");
    if (lines[at].size() > 1'048'576) return fail(0, "the header has more than 1048576 characters");
    if (left == 1) return fail(1, "the file ends inside the record, before its sequence");
    if (left == 2) return fail(2, "the file ends inside the record, before its '+' line");
    if (lines[at + 2].substr(0, 1) != "+") {
      return fail(2, "the third line starts with " + shown(lines[at + 2]) + " instead of '+'");
    }
    const std::string sequence = lines[at + 1];
    if (left == 3) return fail(3, "the file ends inside the record, before its quality");
    const std::string quality = lines[at + 3];
    if (isColours(sequence)) {
      return fail(
          1, "the read is in colour space (a base followed by digits); only reads of bases can be analysed");
    }
    if (sequence.size() != quality.size()) {
      return fail(3, "the quality has " + std::to_string(quality.size()) + " characters, the sequence " +
                         std::to_string(sequence.size()));
    }
    for (std::size_t i = 0; i < quality.size(); ++i) {
      if (quality[i] >= 33 && quality[i] <= 126) continue;
      return fail(3, "the quality has " + shown(quality.substr(i)) + " at position " + std::to_string(i + 1) +
                         "; allowed are '!' to '~'");
    }
    result.records.emplace_back(lines[at], sequence, quality);
  }
  if (result.records.empty())
    result.error = lines.empty() ? "the file is empty" : "the file holds no records";
  return result;
}

}  // namespace genostat::test
