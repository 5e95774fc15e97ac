#include "standalone/output/output_document.h"

#include <set>
#include <string>
#include <utility>
#include <vector>

#include "standalone/language/language.h"
#include "standalone/output/chart_json.h"
#include "standalone/output/table_json.h"
#include "standalone/syntax/diagnostic.h"

namespace genostat::standalone {

namespace {

constexpr int kFormatVersion = 1;

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
  std::string source;
  std::set<std::pair<std::string, std::string>> leftOut;  // type and procedure
  unsigned command = 0;                                   // 0: what stands outside of commands

  // `writeMembers` adds what an item of this type has beyond what all have.
  template <typename WriteMembers>
  void add(const char* type, WriteMembers writeMembers) {
    rapidjson::StringBuffer buffer;
    JsonWriter writer(buffer);
    writer.StartObject();
    writeMember(writer, "type", type);
    if (command > 0) {
      writer.Key("command");
      writer.Uint(command);
      writeMember(writer, "source", source);
    }
    writeMembers(writer);
    writer.EndObject();
    items.emplace_back(buffer.GetString(), buffer.GetSize());
    if (listener) listener(items.back());
  }

  bool leavesOut(std::string_view type, std::string_view procedure) const {
    return leftOut.contains({std::string(type), std::string(procedure)});
  }

  void addTable(std::string_view procedure, const PivotTable& table) {
    if (leavesOut("table", procedure)) return;
    add("table", [&](JsonWriter& writer) {
      writeMember(writer, "procedure", procedure);
      writeTableMembers(writer, table);
    });
  }
};

OutputDocument::OutputDocument() : contents_(std::make_unique<Contents>()) {}
OutputDocument::~OutputDocument() = default;

void OutputDocument::addTable(std::string_view procedure, const PivotTable& table) {
  PivotTable squared = table;
  squareUp(squared);
  contents_->addTable(procedure, squared);
}

void OutputDocument::addChart(std::string_view procedure, const Chart& chart) {
  if (contents_->leavesOut("chart", procedure)) return;
  contents_->add("chart", [&](JsonWriter& writer) {
    writeMember(writer, "procedure", procedure);
    writeChartMembers(writer, chart);
  });
}

void OutputDocument::beginCommand(std::string_view source) {
  contents_->source = source;
  ++contents_->command;
}

void OutputDocument::addText(std::string_view kind, std::string_view text) {
  contents_->add("text", [&](JsonWriter& writer) {
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
    contents_->addTable(procedure, table);
  }
}

void OutputDocument::leaveOut(const std::string& type, const std::string& procedure) {
  contents_->leftOut.emplace(type, procedure);
}

void OutputDocument::onItem(std::function<void(const std::string& itemJson)> listener) {
  contents_->listener = std::move(listener);
}

const std::vector<std::string>& OutputDocument::items() const {
  return contents_->items;
}

std::string OutputDocument::toJson() const {
  std::string json = "{\"format\":\"genostat-output\",\"version\":" + std::to_string(kFormatVersion) +
                     ",\"language\":\"" + language().code + "\",\"items\":[";
  const char* separator = "\n";
  for (const std::string& item : contents_->items) {
    json += separator;
    json += item;
    separator = ",\n";
  }
  return json + "\n]}\n";
}

}  // namespace genostat::standalone
