#include "standalone/output/table_json.h"

#include <rapidjson/error/en.h>

#include <cmath>
#include <string>

#include "common/json/parse.h"
#include "common/text/utf8.h"

namespace genostat::standalone {

namespace {

// Labels nest by hand-made procedures only; this keeps a hostile text from exhausting the stack.
constexpr int kDeepestNesting = 32;

void writeMark(JsonWriter& writer, const char* key, const std::string& mark) {
  if (!mark.empty()) writeMember(writer, key, mark);
}

void writeCategories(JsonWriter& writer, const char* key, const std::vector<Category>& categories) {
  writeArray(writer, key, categories, [&](const Category& category) {
    writer.StartObject();
    writeMember(writer, "label", category.label);
    writeMark(writer, "mark", category.mark);
    if (!category.children.empty()) writeCategories(writer, "children", category.children);
    writer.EndObject();
  });
}

void writeDimension(JsonWriter& writer, const char* key, const std::string& label,
                    const std::vector<Category>& categories) {
  writer.Key(key);
  writer.StartObject();
  writeMember(writer, "label", label);
  writeCategories(writer, "categories", categories);
  writer.EndObject();
}

void writeCell(JsonWriter& writer, const CellValue& cell) {
  if (const auto* text = std::get_if<std::string>(&cell.value)) {
    if (cell.mark.empty()) return writeString(writer, *text);
    writer.StartObject();
    writeMember(writer, "text", *text);
    writeMark(writer, "mark", cell.mark);
    writer.EndObject();
    return;
  }
  const auto* number = std::get_if<double>(&cell.value);
  if (number == nullptr || !std::isfinite(*number)) {
    writer.Null();
    return;
  }
  writer.StartObject();
  writeMember(writer, "number", *number);
  writeMember(writer, "decimals", cell.format.decimals);
  if (!cell.format.leadingZero) writeMember(writer, "leadingZero", false);
  writeMark(writer, "mark", cell.mark);
  writer.EndObject();
}

[[noreturn]] void fail(const std::string& what) {
  throw JsonFormatError("the output JSON is malformed: " + what);
}

const rapidjson::Value& objectMember(const rapidjson::Value& object, const char* key) {
  const auto member = object.FindMember(key);
  if (member == object.MemberEnd() || !member->value.IsObject())
    fail(std::string("no object \"") + key + '"');
  return member->value;
}

int intMember(const rapidjson::Value& object, const char* key) {
  const auto member = object.FindMember(key);
  return member != object.MemberEnd() && member->value.IsInt() ? member->value.GetInt() : 0;
}

std::vector<Category> readCategories(const rapidjson::Value& array, int depth) {
  if (depth > kDeepestNesting) fail("labels are nested too deeply");
  std::vector<Category> categories;
  for (const rapidjson::Value& value : array.GetArray()) {
    if (!value.IsObject()) fail("a category is no object");
    Category category{
        std::string(stringMember(value, "label")), {}, std::string(stringMember(value, "mark"))};
    if (value.HasMember("children"))
      category.children = readCategories(arrayMember(value, "children"), depth + 1);
    categories.push_back(std::move(category));
  }
  return categories;
}

CellValue readCell(const rapidjson::Value& value) {
  if (value.IsNull()) return {};
  if (value.IsString()) return {std::string(value.GetString(), value.GetStringLength()), {}};
  if (!value.IsObject()) fail("a cell is neither null, a text nor a number with its format");
  const std::string mark(stringMember(value, "mark"));
  if (value.HasMember("text")) return {std::string(stringMember(value, "text")), {}, mark};
  const auto number = value.FindMember("number");
  if (number == value.MemberEnd() || !number->value.IsNumber()) fail("a cell object without a number");
  const auto leadingZero = value.FindMember("leadingZero");
  const bool zero = leadingZero == value.MemberEnd() || !leadingZero->value.IsFalse();
  return {number->value.GetDouble(), {intMember(value, "decimals"), zero}, mark};
}

}  // namespace

void writeString(JsonWriter& writer, std::string_view text) {
  const std::string valid = common::toValidUtf8(text);
  writer.String(valid.data(), static_cast<rapidjson::SizeType>(valid.size()));
}

void writeMember(JsonWriter& writer, std::string_view key, std::string_view text) {
  writer.Key(key.data(), static_cast<rapidjson::SizeType>(key.size()));
  writeString(writer, text);
}

void writeNumber(JsonWriter& writer, double number) {
  if (std::isfinite(number)) {
    writer.Double(number);
  } else {
    writer.Null();
  }
}

void writeTexts(JsonWriter& writer, const char* key, const std::vector<std::string>& texts) {
  writeArray(writer, key, texts, [&](const std::string& text) { writeString(writer, text); });
}

void writeTableMembers(JsonWriter& writer, const PivotTable& table) {
  writeMember(writer, "title", table.title);
  writeMark(writer, "titleMark", table.titleMark);
  writeDimension(writer, "rows", table.rowLabel, table.rows);
  writeDimension(writer, "columns", table.columnLabel, table.columns);
  writeArray(writer, "cells", table.cells, [&](const std::vector<CellValue>& row) {
    writer.StartArray();
    for (const CellValue& cell : row) {
      writeCell(writer, cell);
    }
    writer.EndArray();
  });
  writeTexts(writer, "footnotes", table.footnotes);
  if (table.minColumnWidth > 0) writeMember(writer, "minColumnWidth", table.minColumnWidth);
  if (table.maxColumnWidth > 0) writeMember(writer, "maxColumnWidth", table.maxColumnWidth);
}

rapidjson::Document parseJson(std::string_view text) {
  common::ParsedJson parsed = common::parseJson<rapidjson::kParseValidateEncodingFlag>(text);
  if (parsed.result.IsError()) fail(rapidjson::GetParseError_En(parsed.result.Code()));
  if (!parsed.document.IsObject()) fail("no object");
  return std::move(parsed.document);
}

PivotTable readTable(const rapidjson::Value& object) {
  if (!object.IsObject()) fail("a table is no object");
  PivotTable table;
  const rapidjson::Value& rows = objectMember(object, "rows");
  const rapidjson::Value& columns = objectMember(object, "columns");
  table.title = stringMember(object, "title");
  table.titleMark = stringMember(object, "titleMark");
  table.rowLabel = stringMember(rows, "label");
  table.columnLabel = stringMember(columns, "label");
  table.rows = readCategories(arrayMember(rows, "categories"), 1);
  table.columns = readCategories(arrayMember(columns, "categories"), 1);
  for (const rapidjson::Value& row : arrayMember(object, "cells").GetArray()) {
    if (!row.IsArray()) fail("a row of cells is no array");
    std::vector<CellValue>& cells = table.cells.emplace_back();
    for (const rapidjson::Value& cell : row.GetArray()) {
      cells.push_back(readCell(cell));
    }
  }
  for (const rapidjson::Value& footnote : arrayMember(object, "footnotes").GetArray()) {
    if (footnote.IsString()) table.footnotes.emplace_back(footnote.GetString(), footnote.GetStringLength());
  }
  table.minColumnWidth = intMember(object, "minColumnWidth");
  table.maxColumnWidth = intMember(object, "maxColumnWidth");
  squareUp(table);
  return table;
}

const rapidjson::Value& arrayMember(const rapidjson::Value& object, const char* key) {
  const auto member = object.FindMember(key);
  if (member == object.MemberEnd() || !member->value.IsArray()) fail(std::string("no array \"") + key + '"');
  return member->value;
}

std::string_view stringMember(const rapidjson::Value& object, const char* key) {
  const auto member = object.FindMember(key);
  if (member == object.MemberEnd() || !member->value.IsString()) return {};
  return {member->value.GetString(), member->value.GetStringLength()};
}

}  // namespace genostat::standalone
