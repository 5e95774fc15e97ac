#include "standalone/output/chart_json.h"

#include <array>
#include <cmath>
#include <span>
#include <string_view>

namespace genostat::standalone {

namespace {

void writeNumber(JsonWriter& writer, double number) {
  if (std::isfinite(number)) {
    writer.Double(number);
  } else {
    writer.Null();
  }
}

template <typename Value, typename Write>
void writeArray(JsonWriter& writer, const char* key, const std::vector<Value>& values, Write write) {
  writer.Key(key);
  writer.StartArray();
  for (const Value& value : values) {
    write(value);
  }
  writer.EndArray();
}

void writeTexts(JsonWriter& writer, const char* key, const std::vector<std::string>& texts) {
  writeArray(writer, key, texts, [&](const std::string& text) { writeString(writer, text); });
}

void writeNumbers(JsonWriter& writer, const std::vector<double>& numbers) {
  writer.StartArray();
  for (const double number : numbers) {
    writeNumber(writer, number);
  }
  writer.EndArray();
}

void writeData(JsonWriter& writer, const Histogram& histogram) {
  writeMember(writer, "kind", "histogram");
  writeMember(writer, "variable", histogram.variable);
  writer.Key("firstEdge");
  writeNumber(writer, histogram.firstEdge);
  writer.Key("binWidth");
  writeNumber(writer, histogram.binWidth);
  writeArray(writer, "counts", histogram.counts, [&](std::size_t count) { writer.Uint64(count); });
  writer.Key("validCount");
  writer.Uint64(histogram.validCount);
  if (histogram.mean) {
    writer.Key("mean");
    writeNumber(writer, *histogram.mean);
  }
  if (histogram.deviation) {
    writer.Key("standardDeviation");
    writeNumber(writer, *histogram.deviation);
  }
  writer.Key("normalCurve");
  writer.Bool(histogram.normalCurve);
}

void writeData(JsonWriter& writer, const ProbabilityPlot& plot) {
  writeMember(writer, "kind", "normalProbability");
  writeMember(writer, "variable", plot.variable);
  writeArray(writer, "points", plot.points, [&](const ProbabilityPlot::Point& point) {
    writeNumbers(writer, {point.observed, point.expected});
  });
}

void writeData(JsonWriter& writer, const ScatterMatrix& matrix) {
  writeMember(writer, "kind", "scatterMatrix");
  writeTexts(writer, "variables", matrix.variables);
  writeArray(writer, "values", matrix.values,
             [&](const std::vector<double>& values) { writeNumbers(writer, values); });
}

void writeData(JsonWriter& writer, const VerdictMap& map) {
  static constexpr std::array<const char*, 4> kVerdicts = {"", "pass", "warn", "fail"};
  writeMember(writer, "kind", "verdicts");
  writeTexts(writer, "samples", map.samples);
  writeTexts(writer, "checks", map.checks);
  writeArray(writer, "verdicts", map.verdicts, [&](const std::vector<VerdictMap::Verdict>& row) {
    writer.StartArray();
    for (const VerdictMap::Verdict verdict : row) {
      if (verdict == VerdictMap::Verdict::None) {
        writer.Null();
      } else {
        writer.String(kVerdicts.at(static_cast<std::size_t>(verdict)));
      }
    }
    writer.EndArray();
  });
}

}  // namespace

void writeChartMembers(JsonWriter& writer, const Chart& chart) {
  writeMember(writer, "title", chart.title);
  std::visit([&](const auto& data) { writeData(writer, data); }, chart.data);
  writeTexts(writer, "notes", chart.notes);
}

}  // namespace genostat::standalone
