// JSON that others wrote.
#pragma once

#include <rapidjson/document.h>
#include <rapidjson/encodedstream.h>
#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

#include <charconv>
#include <cstdint>
#include <string_view>
#include <system_error>
#include <utility>

namespace genostat::common {

// A document that reads its numbers itself: of some, RapidJSON computes what C++ does not define, with full
// precision (0e308) and without (0.0000000000e-2147483639).
class JsonDocument : public rapidjson::Document {
 public:
  // Called by the parser, with text that has a number's form.
  bool RawNumber(const char* digits, rapidjson::SizeType length, bool /*copy*/) {
    const std::string_view text(digits, length);
    std::int64_t whole = 0;
    std::uint64_t large = 0;
    double number = 0;
    if (read(text, whole) == std::errc()) return Int64(whole);
    if (read(text, large) == std::errc()) return Uint64(large);
    if (read(text, number) == std::errc()) return Double(number);
    // No double is so large, or so close to zero.
    const bool tiny = text.find('-', 1) != text.npos || text.find_first_of("eE") == text.npos;
    return tiny && Double(0);
  }

 private:
  template <typename Number>
  static std::errc read(std::string_view text, Number& value) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return end == text.data() + text.size() ? error : std::errc::invalid_argument;
  }
};

struct ParsedJson {
  rapidjson::Document document;  // null after an error
  rapidjson::ParseResult result;
};

// Parses without recursion, so that depth cannot overflow the stack. A number beyond a double's range is an
// error. `kMoreFlags` are RapidJSON's.
template <unsigned kMoreFlags = rapidjson::kParseNoFlags>
ParsedJson parseJson(std::string_view text) {
  JsonDocument document;
  rapidjson::ParseResult result;
  const auto read = [&](rapidjson::Document&) {
    rapidjson::MemoryStream bytes(text.data(), text.size());
    rapidjson::EncodedInputStream<rapidjson::UTF8<>, rapidjson::MemoryStream> stream(bytes);
    constexpr unsigned kFlags = rapidjson::kParseIterativeFlag | rapidjson::kParseNumbersAsStringsFlag;
    result = rapidjson::Reader().Parse<kFlags | kMoreFlags>(stream, document);
    return !result.IsError();
  };
  document.Populate(read);
  return {std::move(document), result};
}

}  // namespace genostat::common
