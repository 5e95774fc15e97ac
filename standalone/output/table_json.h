// The JSON form of pivot tables, as docs/output-format.md describes it: the one place that
// writes it and the one that reads it.
#pragma once

#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <stdexcept>
#include <string_view>

#include "standalone/output/pivot_table.h"

namespace genostat::standalone {

using JsonWriter = rapidjson::Writer<rapidjson::StringBuffer>;

// Both replace invalid UTF-8, so that whatever is written is valid JSON.
void writeString(JsonWriter& writer, std::string_view text);
void writeMember(JsonWriter& writer, std::string_view key, std::string_view text);

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
