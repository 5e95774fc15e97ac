// Any text as a data file: the records that a walk from byte to byte finds, and numbers as the library reads
// them. The first byte says which delimiters and qualifier the file has.
#include <charconv>
#include <cmath>
#include <cstdint>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/data/number_text.h"
#include "standalone/data/record_reader.h"
#include "tests/fuzz/require.h"

namespace {

using genostat::standalone::DelimitedFormat;
using Records = std::vector<std::vector<std::string>>;

struct Outcome {
  Records records;
  std::string error;
  bool operator==(const Outcome&) const = default;
};

// A carriage return that ends the line's last field goes, unless it stood in quotes.
void endLine(std::string& field, std::size_t unquotedLength) {
  if (unquotedLength > 0 && field.back() == '\r') field.pop_back();
}

Outcome walk(std::string_view text, const DelimitedFormat& format) {
  Outcome outcome;
  if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF")) {
    outcome.error = "line 1: the text is UTF-16, not UTF-8";
    return outcome;
  }
  if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
  std::size_t line = 1;
  while (!text.empty()) {
    std::vector<std::string>& fields = outcome.records.emplace_back();
    while (true) {
      std::string& field = fields.emplace_back();
      if (format.qualifier && text.starts_with(*format.qualifier)) {
        const std::string opened = std::to_string(line);
        while (true) {
          text.remove_prefix(1);
          const std::size_t quote = text.find(*format.qualifier);
          if (quote == std::string_view::npos) {
            outcome.error = "line " + opened + ": a quoted value is not closed";
            outcome.records.clear();
            return outcome;
          }
          const std::string_view part = text.substr(0, quote);
          for (const char c : part) {
            line += c == '\n' ? 1U : 0U;
          }
          field += part;
          text.remove_prefix(quote + 1);
          if (!text.starts_with(*format.qualifier)) break;
          field += *format.qualifier;
        }
      }
      const std::size_t inside = field.size();
      while (!text.empty() && text.front() != '\n' &&
             format.delimiters.find(text.front()) == std::string::npos) {
        field += text.front();
        text.remove_prefix(1);
      }
      if (text.empty() || text.front() == '\n') {
        endLine(field, field.size() - inside);
        break;
      }
      text.remove_prefix(1);
    }
    if (!text.empty()) text.remove_prefix(1);
    ++line;
  }
  return outcome;
}

Outcome readRecords(std::string_view text, const DelimitedFormat& format) {
  Outcome outcome;
  try {
    std::istringstream input{std::string(text)};
    genostat::standalone::RecordReader reader(input, format);
    for (auto records = reader.next(); !records.empty(); records = reader.next()) {
      for (const genostat::standalone::Record& record : records) {
        outcome.records.emplace_back(record.fields.begin(), record.fields.end());
      }
    }
  } catch (const genostat::standalone::ImportError& error) {
    outcome.records.clear();
    outcome.error = error.what();
  }
  return outcome;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using genostat::test::require;
  if (size == 0) return 0;
  const std::string_view text(reinterpret_cast<const char*>(data) + 1, size - 1);
  DelimitedFormat format;
  if ((data[0] & 1U) != 0) format.delimiters = ";\t ";
  if ((data[0] & 2U) != 0) format.qualifier.reset();
  const Outcome outcome = readRecords(text, format);
  require(outcome == walk(text, format), "the records and the error are those of the walk: " + outcome.error);
  for (const auto& fields : outcome.records) {
    for (const std::string& field : fields) {
      const genostat::standalone::ParsedNumber number = genostat::standalone::parseNumber(field, '.');
      require(std::isfinite(number.value), "a number is finite: " + field);
      double expected = 0;
      const char* const begin = field.data() + (field.starts_with('+') && !field.starts_with("+-") ? 1 : 0);
      const auto [end, error] = std::from_chars(begin, field.data() + field.size(), expected);
      if (error == std::errc() && end == field.data() + field.size() && std::isfinite(expected))
        require(number && number.value == expected, "the library reads the same number: " + field);
    }
  }
  return 0;
}
