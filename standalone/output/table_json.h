// How this program writes and reads JSON, and the JSON form of pivot tables, as docs/output-format.md
// describes it.
#pragma once

#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "standalone/output/pivot_table.h"

namespace genostat::standalone {

using JsonWriter = rapidjson::Writer<rapidjson::StringBuffer>;

// Both replace invalid UTF-8, so that whatever is written is valid JSON.
void writeString(JsonWriter& writer, std::string_view text);
void writeMember(JsonWriter& writer, std::string_view key, std::string_view text);
// JSON has no words for infinity and not-a-number: null stands for them.
void writeNumber(JsonWriter& writer, double number);

template <typename Number>
requires std::is_arithmetic_v<Number>
void writeMember(JsonWriter& writer, const char* key, Number value) {
  writer.Key(key);
  if constexpr (std::is_floating_point_v<Number>) {
    writeNumber(writer, value);
  } else {
    rapidjson::Value(value).Accept(writer);
  }
}

// An array of what `write` writes of each value.
template <typename Value, typename Write>
void writeArray(JsonWriter& writer, const char* key, const std::vector<Value>& values, Write write) {
  writer.Key(key);
  writer.StartArray();
  for (const Value& value : values) {
    write(value);
  }
  writer.EndArray();
}
void writeTexts(JsonWriter& writer, const char* key, const std::vector<std::string>& texts);

// The text of an object with the members that `writeMembers` writes.
template <typename WriteMembers>
std::string jsonObject(WriteMembers writeMembers) {
  rapidjson::StringBuffer buffer;
  JsonWriter writer(buffer);
  writer.StartObject();
  writeMembers(writer);
  writer.EndObject();
  return {buffer.GetString(), buffer.GetSize()};
}

// Writes the members of a table into an object that is open.
void writeTableMembers(JsonWriter& writer, const PivotTable& table);

struct JsonFormatError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// Parses without recursion, so that depth cannot overflow the stack. Throws JsonFormatError.
rapidjson::Document parseJson(std::string_view text);

// Throws JsonFormatError when the value is no table. The result is squared up.
PivotTable readTable(const rapidjson::Value& object);

// Throws JsonFormatError when there is no such array.
const rapidjson::Value& arrayMember(const rapidjson::Value& object, const char* key);

// A member that is a string, or an empty text.
std::string_view stringMember(const rapidjson::Value& object, const char* key);

}  // namespace genostat::standalone
