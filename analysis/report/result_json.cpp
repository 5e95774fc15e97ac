#include "analysis/report/result_json.h"

#include <array>
#include <cstddef>

#include "analysis/report/json_text.h"

namespace genostat::analysis {

namespace {

// The table's fields: numbers as they stand there, so that both documents agree
// to the last digit.
void writeColumns(JsonText& json, const ResultRow& row) {
  json.objectMember("columns", [&] {
    for (const auto& [column, text] : columnTexts(row)) {
      json.key(column.name);
      if (text.empty()) {
        json.nothing();
      } else if (column.kind == common::ResultColumn::Kind::Number) {
        json.rawNumber(text);
      } else {
        json.value(text);
      }
    }
  });
}

void writeGroup(JsonText& json, const GroupProfile& group) {
  json.object([&] {
    json.member("positions", group.positions);
    json.member("meanPhred", group.meanPhred);
    if (group.quantiles) {
      const QualityQuantiles& phred = *group.quantiles;
      json.arrayMember("phredQuantiles", std::array{phred.tenth, phred.lowerQuartile, phred.median,
                                                    phred.upperQuartile, phred.ninetieth});
    }
    if (group.bases) json.arrayMember("basesPercent", *group.bases);
    json.member("nPercent", group.nPercent);
  });
}

void writeGc(JsonText& json, const GcSummary& gc) {
  json.objectMember("gcContent", [&] {
    json.member("deviation", gc.deviation);
    json.arrayMember("reads", gc.observed);
    json.arrayMember("model", gc.model);
  });
}

void writeReadsByQuality(JsonText& json, const SampleResult& result) {
  json.objectMember("readsByMeanPhred", [&] {
    for (std::size_t code = 0; code < result.readsByMeanQuality.size(); ++code) {
      if (result.readsByMeanQuality[code] == 0) continue;
      const std::string phred = std::to_string(static_cast<int>(code) - result.phredOffset);
      json.member(phred.c_str(), result.readsByMeanQuality[code]);
    }
  });
}

void writeAdapters(JsonText& json, const SampleResult& result) {
  json.objectMember("adapterContent", [&] {
    json.arrayMember("positions", result.adapters.groups);
    json.arrayMember("curves", result.adapters.curves, [&](const AdapterCurve& curve) {
      json.object([&] {
        json.member("adapter", curve.name);
        json.arrayMember("percent", curve.percent);
      });
    });
  });
}

void writeTiles(JsonText& json, const SampleResult& result) {
  json.objectMember("tileDeviations", [&] {
    json.arrayMember("positions", result.tiles.groups);
    json.arrayMember("tiles", result.tiles.tiles, [&](const TileDeviations& deviations) {
      json.object([&] {
        json.member("tile", deviations.tile);
        json.arrayMember("phred", deviations.phred);
      });
    });
  });
}

void writeSample(JsonText& json, const ResultRow& row) {
  const SampleResult& result = row.result;
  json.object([&] {
    json.member("name", row.sample);
    json.member("file", row.file);
    if (!row.notRead.empty()) json.member("notRead", row.notRead);
    writeColumns(json, row);
    if (!row.notRead.empty()) return;
    json.member("phredOffset", result.phredOffset);
    json.arrayMember("profile", result.profile, [&](const GroupProfile& group) { writeGroup(json, group); });
    json.arrayMember("lengths", result.lengthBins, [&](const LengthBin& bin) {
      json.object([&] {
        json.member("shortest", bin.shortest);
        json.member("longest", bin.longest);
        json.member("reads", bin.reads);
      });
    });
    if (result.gc) writeGc(json, *result.gc);
    writeReadsByQuality(json, result);
    json.arrayMember("duplication", result.duplication.levels, [&](const DuplicationLevel& level) {
      json.object([&] {
        json.member("from", level.from);
        json.member("readsPercent", level.readsPercent);
        json.member("distinctPercent", level.distinctPercent);
      });
    });
    json.arrayMember("overrepresented", result.overrepresented, [&](const OverrepresentedSequence& one) {
      json.object([&] {
        json.member("sequence", one.sequence);
        json.member("reads", one.reads);
        json.member("percent", one.percent);
        if (!one.origin.empty()) json.member("origin", one.origin);
      });
    });
    writeAdapters(json, result);
    writeTiles(json, result);
  });
}

}  // namespace

std::string jsonBeginning(const Adapter& adapter) {
  JsonText json;
  json.object([&] {
    json.member("format", "genostat-qc");
    json.member("version", 1);
    json.member("program", "genostat-analysis " GENOSTAT_VERSION);
    json.objectMember("adapter", [&] {
      json.member("kind", adapterKindName(adapter.kind));
      if (!adapter.sequence.empty()) json.member("sequence", adapter.sequence);
    });
  });
  std::string text = json.text();
  text.pop_back();
  return text + ",\"samples\":[";
}

std::string jsonSample(const ResultRow& row, bool isFirst) {
  JsonText json;
  writeSample(json, row);
  return (isFirst ? "" : ",") + json.text();
}

std::string jsonEnd() {
  return "]}\n";
}

}  // namespace genostat::analysis
