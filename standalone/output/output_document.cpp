#include "standalone/output/output_document.h"

#include "standalone/language/language.h"
#include "standalone/output/chart_json.h"
#include "standalone/output/table_json.h"
#include "standalone/syntax/diagnostic.h"

namespace genostat::standalone {

namespace {

constexpr int kFormatVersion = 1;

std::vector<PivotTable> readProcedureTables(std::string_view json) {
  const rapidjson::Document document = parseJson(json);
  std::vector<PivotTable> read;
  for (const rapidjson::Value& table : arrayMember(document, "tables").GetArray()) {
    read.push_back(readTable(table));
  }
  return read;
}

}  // namespace

template <typename WriteMembers>
void OutputDocument::add(const char* type, WriteMembers writeMembers) {
  items_.push_back(jsonObject([&](JsonWriter& writer) {
    writeMember(writer, "type", type);
    if (command_ > 0) {
      writeMember(writer, "command", command_);
      writeMember(writer, "source", source_);
    }
    writeMembers(writer);
  }));
  if (listener_) listener_(items_.back());
}

bool OutputDocument::leavesOut(std::string_view type, std::string_view procedure) const {
  return leftOut_.contains({std::string(type), std::string(procedure)});
}

void OutputDocument::addSquaredUp(std::string_view procedure, const PivotTable& table) {
  if (leavesOut("table", procedure)) return;
  add("table", [&](JsonWriter& writer) {
    writeMember(writer, "procedure", procedure);
    writeTableMembers(writer, table);
  });
}

void OutputDocument::addTable(std::string_view procedure, const PivotTable& table) {
  PivotTable squared = table;
  squareUp(squared);
  addSquaredUp(procedure, squared);
}

void OutputDocument::addChart(std::string_view procedure, const Chart& chart) {
  if (leavesOut("chart", procedure)) return;
  add("chart", [&](JsonWriter& writer) {
    writeMember(writer, "procedure", procedure);
    writeChartMembers(writer, chart);
  });
}

void OutputDocument::beginCommand(std::string_view source) {
  source_ = source;
  ++command_;
}

void OutputDocument::addText(std::string_view kind, std::string_view text) {
  add("text", [&](JsonWriter& writer) {
    writeMember(writer, "kind", kind);
    writeMember(writer, "text", text);
  });
}

void OutputDocument::addProcedureJson(std::string_view procedure, std::string_view json) {
  std::vector<PivotTable> tables;
  try {
    tables = readProcedureTables(json);
  } catch (const JsonFormatError& error) {
    throw CommandError(std::string(procedure) + ": " + error.what());
  }
  for (const PivotTable& table : tables) {
    addSquaredUp(procedure, table);
  }
}

std::string OutputDocument::toJson() const {
  std::string json = "{\"format\":\"genostat-output\",\"version\":" + std::to_string(kFormatVersion) +
                     ",\"language\":\"" + language().code + "\",\"items\":[";
  const char* separator = "\n";
  for (const std::string& item : items_) {
    json += separator;
    json += item;
    separator = ",\n";
  }
  return json + "\n]}\n";
}

}  // namespace genostat::standalone
