// The JSON form of charts, as docs/output-format.md describes it.
#pragma once

#include "standalone/output/chart.h"
#include "standalone/output/table_json.h"

namespace genostat::standalone {

// Writes the members of a chart into an object that is open.
void writeChartMembers(JsonWriter& writer, const Chart& chart);

// Throws JsonFormatError when the value is no chart of a kind that this version knows.
Chart readChart(const rapidjson::Value& object);

}  // namespace genostat::standalone
