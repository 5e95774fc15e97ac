#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <variant>
#include <vector>

#include "standalone/language/translation.h"
#include "standalone/output/chart_json.h"
#include "standalone/output/html_parts.h"

namespace genostat::standalone {

namespace {

using common::Verdict;
using fmt::literals::operator""_a;

// A browser draws this many points at once without making the reader wait.
constexpr std::size_t kMostPoints = 40'000;
constexpr std::size_t kMostPlotPoints = 4'000;

// Keeps every n-th of the values, so that at most `most` are left. Returns n.
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
  const std::string json = jsonObject([&](JsonWriter& writer) { writeChartMembers(writer, chart); });
  return "<script type=\"application/json\">" + escapeScriptJson(json) + "</script>\n";
}

// More samples than a screen shows at once.
bool isTall(const Chart& chart) {
  const auto* map = std::get_if<VerdictMap>(&chart.data);
  return map != nullptr && map->samples.size() > 40;
}

std::string legendHtml(const Chart& chart) {
  if (!std::holds_alternative<VerdictMap>(chart.data)) return {};
  static constexpr std::array<const char*, 4> kSigns = {"&#160;", "\xE2\x9C\x93", "!", "\xE2\x9C\x97"};
  std::string html =
      fmt::format("<ul class=\"legend\" aria-label=\"{}\">\n", escapeHtml(translated("Signs")));
  for (const Verdict verdict : {Verdict::Pass, Verdict::Warn, Verdict::Fail, Verdict::None}) {
    const std::string_view word = common::verdictWord(verdict);
    html += fmt::format("<li><span class=\"{name}\" aria-hidden=\"true\">{sign}</span>{meaning}</li>\n",
                        "name"_a = word.empty() ? "none" : word,
                        "sign"_a = kSigns[static_cast<std::size_t>(verdict)],
                        "meaning"_a = escapeHtml(word.empty() ? translated("not judged") : translated(word)));
  }
  return html + "</ul>\n";
}

}  // namespace

std::string renderChartAsHtml(const Chart& given, std::string_view id) {
  Chart chart = given;
  const std::string summary = summarizeChart(given);
  const std::size_t step = std::visit([](auto& data) { return thinChart(data); }, chart.data);
  if (step > 1)
    chart.notes.push_back(translated("One of every {1} points is drawn.", {std::to_string(step)}));
  std::visit([](auto& data) { makePrintable(data); }, chart.data);

  std::string data;
  if (const auto table = chartAsTable(given)) {
    const std::string name = translated("Data of the chart");
    data = fmt::format("<details><summary>{name}</summary>\n{table}</details>\n", "name"_a = escapeHtml(name),
                       "table"_a = renderTableAsHtml(*table, std::string(id) + "-data", name));
  }
  return fmt::format(
      R"(<figure class="chart" id="{id}">
<figcaption><div class="title" id="{id}-title">{title}</div>
<p class="summary">{summary}</p>{legend}</figcaption>
<div class="scroll{tall}" role="group" tabindex="0" aria-labelledby="{id}-title"><div class="drawing" role="img" )"
      R"(aria-label="{label}"></div></div>
<noscript><p class="summary">{noScript}</p></noscript>
{notes}{data}{element}</figure>
)",
      "id"_a = escapeHtml(id), "title"_a = escapeHtml(chart.title), "summary"_a = escapeHtml(summary),
      "legend"_a = legendHtml(chart), "tall"_a = isTall(chart) ? " tall" : "",
      "label"_a = escapeHtml(chart.title + ". " + summary),
      "noScript"_a = escapeHtml(translated("Drawing the chart needs scripts.")),
      "notes"_a = notesHtml(chart.notes), "data"_a = data, "element"_a = dataElement(chart));
}

}  // namespace genostat::standalone
