#include "standalone/output/output_document.h"

#include <utility>
#include <vector>

#include "standalone/output/table_json.h"
#include "standalone/syntax/diagnostic.h"

namespace genostat::standalone {

namespace {

constexpr int kFormatVersion = 1;

std::string tableItem(std::string_view procedure, const PivotTable& table) {
  rapidjson::StringBuffer buffer;
  JsonWriter writer(buffer);
  writer.StartObject();
  writeMember(writer, "type", "table");
  writeMember(writer, "procedure", procedure);
  writeTableMembers(writer, table);
  writer.EndObject();
  return std::string(buffer.GetString(), buffer.GetSize());
}

std::vector<PivotTable> readProcedureTables(std::string_view json) {
  const rapidjson::Document document = parseJson(json);
  const auto tables = document.FindMember("tables");
  if (tables == document.MemberEnd() || !tables->value.IsArray()) {
    throw JsonFormatError("the output JSON is malformed: no array \"tables\"");
  }
  std::vector<PivotTable> read;
  for (const rapidjson::Value& table : tables->value.GetArray()) {
    read.push_back(readTable(table));
  }
  return read;
}

}  // namespace

struct OutputDocument::Contents {
  std::vector<std::string> items;
  std::function<void(const std::string&)> listener;

  void add(std::string item) {
    items.push_back(std::move(item));
    if (listener) listener(items.back());
  }
};

OutputDocument::OutputDocument() : contents_(std::make_unique<Contents>()) {}
OutputDocument::~OutputDocument() = default;

void OutputDocument::addTable(std::string_view procedure, const PivotTable& table) {
  PivotTable squared = table;
  squareUp(squared);
  contents_->add(tableItem(procedure, squared));
}

void OutputDocument::addText(std::string_view kind, std::string_view text) {
  rapidjson::StringBuffer buffer;
  JsonWriter writer(buffer);
  writer.StartObject();
  writeMember(writer, "type", "text");
  writeMember(writer, "kind", kind);
  writeMember(writer, "text", text);
  writer.EndObject();
  contents_->add(std::string(buffer.GetString(), buffer.GetSize()));
}

void OutputDocument::addProcedureJson(std::string_view procedure, std::string_view json) {
  std::vector<PivotTable> tables;
  try {
    tables = readProcedureTables(json);
  } catch (const JsonFormatError& error) {
    throw CommandError(std::string(procedure) + ": " + error.what());
  }
  for (const PivotTable& table : tables) {
    contents_->add(tableItem(procedure, table));
  }
}

void OutputDocument::onItem(std::function<void(const std::string& itemJson)> listener) {
  contents_->listener = std::move(listener);
}

std::string OutputDocument::toJson() const {
  std::string json =
      "{\"format\":\"genostat-output\",\"version\":" + std::to_string(kFormatVersion) + ",\"items\":[";
  const char* separator = "\n";
  for (const std::string& item : contents_->items) {
    json += separator;
    json += item;
    separator = ",\n";
  }
  return json + "\n]}\n";
}

}  // namespace genostat::standalone
