#include "analysis/report/result_json.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "analysis/metrics/sample_result.h"
#include "common/text/number_text.h"
#include "common/text/utf8.h"

namespace genostat::analysis {

namespace {

// Puts values into the document, one overload for each type that results are
// made of.
class JsonText {
 public:
  void value(std::string_view text) {
    const std::string repaired = common::toValidUtf8(text);
    writer_.String(repaired.data(), static_cast<rapidjson::SizeType>(repaired.size()));
  }
  void value(std::uint64_t number) { writer_.Uint64(number); }
  void value(int number) { writer_.Int(number); }
  // Six decimals are more than any of the measures means.
  void value(double number) {
    if (std::isfinite(number)) {
      rawNumber(common::shortestText(std::round(number * 1e6) / 1e6 + 0.0));
    } else {
      writer_.Null();
    }
  }
  void value(float number) { value(std::round(static_cast<double>(number) * 1e4) / 1e4); }
  void value(const PositionGroup& group) {
    writer_.StartArray();
    value(group.first);
    value(group.last);
    writer_.EndArray();
  }
  void nothing() { writer_.Null(); }
  void rawNumber(const std::string& text) {
    writer_.RawValue(text.data(), text.size(), rapidjson::kNumberType);
  }

  template <typename Value>
  void member(const char* name, const Value& content) {
    writer_.Key(name);
    value(content);
  }
  template <typename Write>
  void object(Write write) {
    writer_.StartObject();
    write();
    writer_.EndObject();
  }
  template <typename Write>
  void objectMember(const char* name, Write write) {
    writer_.Key(name);
    object(write);
  }
  // `write` puts one value for each element.
  template <typename Values, typename Write>
  void arrayMember(const char* name, const Values& values, Write write) {
    writer_.Key(name);
    writer_.StartArray();
    for (const auto& element : values) {
      write(element);
    }
    writer_.EndArray();
  }
  template <typename Values>
  void arrayMember(const char* name, const Values& values) {
    arrayMember(name, values, [this](const auto& element) { value(element); });
  }
  void key(std::string_view name) { writer_.Key(name.data(), static_cast<rapidjson::SizeType>(name.size())); }

  std::string text() const { return std::string(buffer_.GetString(), buffer_.GetSize()) + '\n'; }

 private:
  rapidjson::StringBuffer buffer_;
  rapidjson::Writer<rapidjson::StringBuffer> writer_{buffer_};
};

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
        json.value(std::string_view(text));
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
        json.member("adapter", std::string_view(curve.name));
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

void writeSample(JsonText& json, const ResultRow& row, const std::string& file) {
  const SampleResult& result = row.result;
  json.object([&] {
    json.member("name", std::string_view(row.sample));
    json.member("file", std::string_view(file));
    writeColumns(json, row);
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
        json.member("sequence", std::string_view(one.sequence));
        json.member("reads", one.reads);
        json.member("percent", one.percent);
        if (!one.origin.empty()) json.member("origin", std::string_view(one.origin));
      });
    });
    writeAdapters(json, result);
    writeTiles(json, result);
  });
}

}  // namespace

std::string resultJson(const std::vector<ResultRow>& rows, const std::vector<std::string>& files,
                       const Adapter& adapter) {
  JsonText json;
  json.object([&] {
    json.member("format", std::string_view("genostat-qc"));
    json.member("version", 1);
    json.member("program", std::string_view("genostat-analysis " GENOSTAT_VERSION));
    json.objectMember("adapter", [&] {
      json.member("kind", adapterKindName(adapter.kind));
      if (!adapter.sequence.empty()) json.member("sequence", std::string_view(adapter.sequence));
    });
    std::size_t index = 0;
    json.arrayMember("samples", rows,
                     [&](const ResultRow& row) { writeSample(json, row, files.at(index++)); });
  });
  return json.text();
}

}  // namespace genostat::analysis
