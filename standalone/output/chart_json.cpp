#include "standalone/output/chart_json.h"

#include <cmath>
#include <limits>
#include <span>
#include <string>
#include <string_view>

namespace genostat::standalone {

namespace {

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
  writeMember(writer, "firstEdge", histogram.firstEdge);
  writeMember(writer, "binWidth", histogram.binWidth);
  writeArray(writer, "counts", histogram.counts, [&](std::size_t count) { writer.Uint64(count); });
  writeMember(writer, "validCount", histogram.validCount);
  if (histogram.mean) writeMember(writer, "mean", *histogram.mean);
  if (histogram.deviation) writeMember(writer, "standardDeviation", *histogram.deviation);
  writeMember(writer, "normalCurve", histogram.normalCurve);
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
  writeMember(writer, "kind", "verdicts");
  writeTexts(writer, "samples", map.samples);
  writeTexts(writer, "checks", map.checks);
  writeArray(writer, "verdicts", map.verdicts, [&](const std::vector<common::Verdict>& row) {
    writer.StartArray();
    for (const common::Verdict verdict : row) {
      if (verdict == common::Verdict::None) {
        writer.Null();
      } else {
        writeString(writer, common::verdictWord(verdict));
      }
    }
    writer.EndArray();
  });
}

[[noreturn]] void refuseChart(std::string_view what) {
  throw JsonFormatError("the chart's JSON is malformed: " + std::string(what));
}

double readNumber(const rapidjson::Value& value) {
  return value.IsNumber() ? value.GetDouble() : std::numeric_limits<double>::quiet_NaN();
}

double numberMember(const rapidjson::Value& object, const char* key) {
  const auto member = object.FindMember(key);
  return member == object.MemberEnd() ? std::numeric_limits<double>::quiet_NaN() : readNumber(member->value);
}

std::optional<double> optionalMember(const rapidjson::Value& object, const char* key) {
  const double number = numberMember(object, key);
  return std::isfinite(number) ? std::optional(number) : std::nullopt;
}

std::size_t readCount(const rapidjson::Value& value) {
  if (!value.IsUint64()) refuseChart("a count is none");
  return static_cast<std::size_t>(value.GetUint64());
}

template <typename Read>
auto readArray(const rapidjson::Value& array, Read read) {
  if (!array.IsArray()) refuseChart("a list is none");
  std::vector<decltype(read(array))> values;
  values.reserve(array.Size());
  for (const rapidjson::Value& value : array.GetArray()) {
    values.push_back(read(value));
  }
  return values;
}

std::vector<std::string> readTexts(const rapidjson::Value& object, const char* key) {
  return readArray(arrayMember(object, key), [](const rapidjson::Value& value) {
    return value.IsString() ? std::string(value.GetString(), value.GetStringLength()) : std::string();
  });
}

Histogram readHistogram(const rapidjson::Value& object) {
  Histogram histogram;
  histogram.variable = stringMember(object, "variable");
  histogram.firstEdge = numberMember(object, "firstEdge");
  histogram.binWidth = numberMember(object, "binWidth");
  histogram.counts = readArray(arrayMember(object, "counts"), readCount);
  const auto valid = object.FindMember("validCount");
  histogram.validCount = valid == object.MemberEnd() ? 0 : readCount(valid->value);
  histogram.mean = optionalMember(object, "mean");
  histogram.deviation = optionalMember(object, "standardDeviation");
  const auto curve = object.FindMember("normalCurve");
  histogram.normalCurve = curve != object.MemberEnd() && curve->value.IsTrue();
  return histogram;
}

ProbabilityPlot readProbabilityPlot(const rapidjson::Value& object) {
  const auto readPoint = [](const rapidjson::Value& pair) {
    if (!pair.IsArray() || pair.Size() != 2) refuseChart("a point is no pair");
    return ProbabilityPlot::Point{readNumber(pair[0]), readNumber(pair[1])};
  };
  return {std::string(stringMember(object, "variable")), readArray(arrayMember(object, "points"), readPoint)};
}

ScatterMatrix readScatterMatrix(const rapidjson::Value& object) {
  ScatterMatrix matrix;
  matrix.variables = readTexts(object, "variables");
  matrix.values = readArray(arrayMember(object, "values"),
                            [](const rapidjson::Value& values) { return readArray(values, readNumber); });
  for (const std::vector<double>& values : matrix.values) {
    if (values.size() != matrix.values.front().size()) refuseChart("the variables differ in their cases");
  }
  if (matrix.values.size() != matrix.variables.size()) refuseChart("values and variables do not agree");
  return matrix;
}

common::Verdict readVerdict(const rapidjson::Value& value) {
  const std::string_view text =
      value.IsString() ? std::string_view(value.GetString(), value.GetStringLength()) : std::string_view();
  return common::verdictNamed(text).value_or(common::Verdict::None);
}

VerdictMap readVerdictMap(const rapidjson::Value& object) {
  VerdictMap map;
  map.samples = readTexts(object, "samples");
  map.checks = readTexts(object, "checks");
  map.verdicts = readArray(arrayMember(object, "verdicts"), [&](const rapidjson::Value& row) {
    std::vector<common::Verdict> verdicts = readArray(row, readVerdict);
    verdicts.resize(map.checks.size());
    return verdicts;
  });
  map.verdicts.resize(map.samples.size(), std::vector<common::Verdict>(map.checks.size()));
  return map;
}

}  // namespace

Chart readChart(const rapidjson::Value& object) {
  Chart chart;
  chart.title = stringMember(object, "title");
  chart.notes = readTexts(object, "notes");
  const std::string_view kind = stringMember(object, "kind");
  if (kind == "histogram") {
    chart.data = readHistogram(object);
  } else if (kind == "normalProbability") {
    chart.data = readProbabilityPlot(object);
  } else if (kind == "scatterMatrix") {
    chart.data = readScatterMatrix(object);
  } else if (kind == "verdicts") {
    chart.data = readVerdictMap(object);
  } else {
    refuseChart("unknown kind");
  }
  return chart;
}

void writeChartMembers(JsonWriter& writer, const Chart& chart) {
  writeMember(writer, "title", chart.title);
  std::visit([&](const auto& data) { writeData(writer, data); }, chart.data);
  writeTexts(writer, "notes", chart.notes);
}

}  // namespace genostat::standalone
