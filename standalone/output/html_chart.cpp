#include "standalone/output/html_chart.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <variant>
#include <vector>

#include "standalone/language/translation.h"
#include "standalone/output/chart_json.h"
#include "standalone/output/chart_summary.h"
#include "standalone/output/html_table.h"
#include "standalone/output/html_text.h"

namespace genostat::standalone {

namespace {

// A browser draws this many points at once without making the reader wait.
constexpr std::size_t kMostPoints = 40'000;
constexpr std::size_t kMostPlotPoints = 4'000;

// Takes every n-th of the values, so that at most `most` stay; the n.
template <typename Value>
std::size_t thin(std::vector<Value>& values, std::size_t most) {
  const std::size_t step = (values.size() + most - 1) / std::max<std::size_t>(most, 1);
  if (step <= 1) return 1;
  std::size_t kept = 0;
  for (std::size_t i = 0; i < values.size(); i += step) {
    values[kept++] = values[i];
  }
  values.resize(kept);
  return step;
}

std::size_t thinChart(ScatterMatrix& matrix) {
  const std::size_t count = matrix.values.size();
  const std::size_t panels = std::max<std::size_t>(count * (count - (count > 0 ? 1 : 0)) / 2, 1);
  std::size_t step = 1;
  for (std::vector<double>& values : matrix.values) {
    step = thin(values, std::max<std::size_t>(kMostPoints / panels, 1));
  }
  return step;
}

std::size_t thinChart(ProbabilityPlot& plot) {
  return thin(plot.points, kMostPlotPoints);
}

template <typename Other>
std::size_t thinChart(Other&) {
  return 1;
}

void makePrintable(std::vector<std::string>& texts) {
  for (std::string& text : texts) {
    text = common::printableText(text);
  }
}

void makePrintable(Histogram& histogram) {
  histogram.variable = common::printableText(histogram.variable);
}

void makePrintable(ProbabilityPlot& plot) {
  plot.variable = common::printableText(plot.variable);
}

void makePrintable(ScatterMatrix& matrix) {
  makePrintable(matrix.variables);
}

void makePrintable(VerdictMap& map) {
  makePrintable(map.samples);
  makePrintable(map.checks);
}

std::string dataElement(const Chart& chart) {
  rapidjson::StringBuffer buffer;
  JsonWriter writer(buffer);
  writer.StartObject();
  writeChartMembers(writer, chart);
  writer.EndObject();
  return "<script type=\"application/json\">" +
         escapeScriptJson(std::string_view(buffer.GetString(), buffer.GetSize())) + "</script>\n";
}

// More samples than a screen shows at once.
bool isTall(const Chart& chart) {
  const auto* map = std::get_if<VerdictMap>(&chart.data);
  return map != nullptr && map->samples.size() > 40;
}

std::string legendHtml(const Chart& chart) {
  if (!std::holds_alternative<VerdictMap>(chart.data)) return {};
  struct Entry {
    const char* name;
    const char* sign;
    const char* meaning;
  };
  static constexpr std::array<Entry, 4> kEntries = {{{"pass", "\xE2\x9C\x93", marked("pass")},
                                                     {"warn", "!", marked("warn")},
                                                     {"fail", "\xE2\x9C\x95", marked("fail")},
                                                     {"none", "&#160;", marked("not judged")}}};
  std::string html = "<ul class=\"legend\" aria-label=\"" + escapeHtml(translated("Signs")) + "\">\n";
  for (const Entry& entry : kEntries) {
    html += std::string("<li><span class=\"") + entry.name + "\" aria-hidden=\"true\">" + entry.sign +
            "</span>" + escapeHtml(translated(entry.meaning)) + "</li>\n";
  }
  return html + "</ul>\n";
}

std::string notesHtml(const std::vector<std::string>& notes) {
  if (notes.empty()) return {};
  std::string html = "<ul class=\"notes\">\n";
  for (const std::string& note : notes) {
    html += "<li>" + escapeHtml(note) + "</li>\n";
  }
  return html + "</ul>\n";
}

}  // namespace

std::string renderChartAsHtml(const Chart& given, std::string_view id) {
  Chart chart = given;
  const std::string base = escapeHtml(id);
  const std::string summary = summarizeChart(given);
  const std::size_t step = std::visit([](auto& data) { return thinChart(data); }, chart.data);
  if (step > 1) chart.notes.push_back(translated("Drawn: one of every {1} points.", {std::to_string(step)}));
  std::visit([](auto& data) { makePrintable(data); }, chart.data);

  std::string html = "<figure class=\"chart\" id=\"" + base + "\">\n<figcaption><div class=\"title\" id=\"" +
                     base + "-title\">" + escapeHtml(chart.title) + "</div>\n<p class=\"summary\">" +
                     escapeHtml(summary) + "</p>" + legendHtml(chart) + "</figcaption>\n";
  html += "<div class=\"scroll" + std::string(isTall(chart) ? " tall" : "") +
          "\" role=\"group\" tabindex=\"0\" aria-labelledby=\"" + base + "-title\">" +
          "<div class=\"drawing\" role=\"img\" aria-label=\"" + escapeHtml(chart.title + ". " + summary) +
          "\"></div></div>\n<noscript><p class=\"summary\">" +
          escapeHtml(translated("Drawing the chart needs scripts.")) + "</p></noscript>\n";
  html += notesHtml(chart.notes);
  if (const auto table = chartAsTable(given)) {
    const std::string name = translated("Data of the chart");
    html += "<details><summary>" + escapeHtml(name) + "</summary>\n" +
            renderTableAsHtml(*table, std::string(id) + "-data", name) + "</details>\n";
  }
  return html + dataElement(chart) + "</figure>\n";
}

}  // namespace genostat::standalone
