// Items of one command form a section, headed by its procedure; commands of one source stand together, and
// where there are several sources each has a heading. The outline at the left mirrors that.

#include "standalone/output/html_report.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>
#include <vector>

#include "standalone/language/language.h"
#include "standalone/language/translation.h"
#include "standalone/output/chart_json.h"
#include "standalone/output/html_parts.h"
#include "standalone/output/report_assets.h"
#include "standalone/output/table_json.h"

namespace genostat::standalone {

namespace {

using fmt::literals::operator""_a;

// One item as it is shown, with what the outline says of it.
struct Block {
  std::string id;
  std::string label;
  std::string html;
};

struct Section {
  std::string source;
  unsigned command = 0;
  std::string procedure;  // empty while only texts are in it
  std::vector<Block> blocks;
};

struct Counts {
  std::size_t tables = 0;
  std::size_t charts = 0;
  std::size_t errors = 0;
  std::size_t warnings = 0;
  std::size_t messages = 0;  // of all kinds
};

unsigned commandOf(const rapidjson::Value& item) {
  const auto member = item.FindMember("command");
  return member != item.MemberEnd() && member->value.IsUint() ? member->value.GetUint() : 0;
}

// "<job 'a'>", as diagnostics name it, without its angles.
std::string sourceOf(const rapidjson::Value& item) {
  std::string_view source = stringMember(item, "source");
  if (source.starts_with('<') && source.ends_with('>')) source = source.substr(1, source.size() - 2);
  return std::string(source);
}

std::string messageWord(std::string_view kind) {
  if (kind == "error") return translated("Error");
  if (kind == "warning") return translated("Warning");
  return translated("Note");
}

std::string messageHtml(std::string_view kind, std::string_view text, const std::string& id) {
  while (text.ends_with('\n')) {
    text.remove_suffix(1);
  }
  return fmt::format(
      "<div class=\"message {kind}\" id=\"{id}\"><strong>{word}</strong>\n<pre>{text}</pre></div>\n",
      "kind"_a = kind == "error" || kind == "warning" ? kind : "note", "id"_a = id,
      "word"_a = escapeHtml(messageWord(kind)), "text"_a = escapeHtml(text, common::LineBreaks::Keep));
}

class Report {
 public:
  void add(const rapidjson::Value& item) {
    const std::string_view type = stringMember(item, "type");
    if (type == "table") {
      addTable(item);
    } else if (type == "chart") {
      addChart(item);
    } else if (type == "text") {
      addMessage(item);
    }
  }

  const std::vector<Section>& sections() const { return sections_; }
  const Counts& counts() const { return counts_; }

 private:
  Section& sectionOf(const rapidjson::Value& item) {
    const unsigned command = commandOf(item);
    const std::string source = sourceOf(item);
    if (sections_.empty() || sections_.back().command != command || sections_.back().source != source) {
      sections_.push_back({source, command, {}, {}});
    }
    if (sections_.back().procedure.empty()) sections_.back().procedure = stringMember(item, "procedure");
    return sections_.back();
  }

  void addTable(const rapidjson::Value& item) {
    const PivotTable table = readTable(item);
    const std::string id = "table-" + std::to_string(++counts_.tables);
    Section& section = sectionOf(item);
    const std::string label = table.title.empty() ? translated("Table") : table.title;
    section.blocks.push_back({id, label, renderTableAsHtml(table, id, section.procedure)});
  }

  void addChart(const rapidjson::Value& item) {
    const Chart chart = readChart(item);
    const std::string id = "chart-" + std::to_string(++counts_.charts);
    sectionOf(item).blocks.push_back({id, chart.title, renderChartAsHtml(chart, id)});
  }

  void addMessage(const rapidjson::Value& item) {
    const std::string_view kind = stringMember(item, "kind");
    if (kind == "error") ++counts_.errors;
    if (kind == "warning") ++counts_.warnings;
    const std::string id = "message-" + std::to_string(++counts_.messages);
    sectionOf(item).blocks.push_back(
        {id, messageWord(kind), messageHtml(kind, stringMember(item, "text"), id)});
  }

  std::vector<Section> sections_;
  Counts counts_;
};

bool namesSources(const std::vector<Section>& sections) {
  return std::ranges::any_of(
      sections, [&](const Section& section) { return section.source != sections.front().source; });
}

std::string procedureOf(const Section& section) {
  if (section.procedure.empty()) return translated("Messages");
  // Commands are called the same in all languages.
  const bool isCommand = std::ranges::none_of(section.procedure, [](char c) { return c >= 'a' && c <= 'z'; });
  return isCommand ? section.procedure : translated(section.procedure);
}

std::string linkHtml(std::string_view id, const std::string& label, const char* attributes = "") {
  return fmt::format("<a{attributes} href=\"#{id}\">{label}</a>", "attributes"_a = attributes, "id"_a = id,
                     "label"_a = escapeHtml(label));
}

// Whether the source is named before this section.
bool beginsSource(const std::vector<Section>& sections, std::size_t i) {
  return i == 0 ? namesSources(sections) : sections[i - 1].source != sections[i].source;
}

std::string idOfSection(std::size_t i) {
  return "section-" + std::to_string(i + 1);
}

std::string outlineHtml(const std::vector<Section>& sections) {
  if (sections.empty()) return "<div></div>\n";
  std::string html = fmt::format(
      "<nav class=\"outline\" aria-label=\"{contents}\">\n<details "
      "open><summary>{contents}</summary>\n<ol>\n",
      "contents"_a = escapeHtml(translated("Contents")));
  for (std::size_t i = 0; i < sections.size(); ++i) {
    const Section& section = sections[i];
    if (beginsSource(sections, i))
      html += fmt::format("<li class=\"source\">{}</li>\n", escapeHtml(section.source));
    html +=
        fmt::format("<li>{}<ol>\n", linkHtml(idOfSection(i), procedureOf(section), " class=\"procedure\""));
    for (const Block& block : section.blocks) {
      html += fmt::format("<li>{}</li>\n", linkHtml(block.id, block.label));
    }
    html += "</ol></li>\n";
  }
  return html + "</ol>\n</details>\n</nav>\n";
}

std::string sectionsHtml(const std::vector<Section>& sections) {
  std::string html;
  const char* const level = namesSources(sections) ? "h3" : "h2";
  for (std::size_t i = 0; i < sections.size(); ++i) {
    const Section& section = sections[i];
    if (beginsSource(sections, i))
      html += fmt::format("<h2 class=\"source-heading\">{}</h2>\n", escapeHtml(section.source));
    html += fmt::format(
        "<section id=\"{id}\" aria-labelledby=\"{id}-title\">\n"
        "<{level} class=\"procedure-heading\" id=\"{id}-title\">{procedure}</{level}>\n",
        "id"_a = idOfSection(i), "level"_a = level, "procedure"_a = escapeHtml(procedureOf(section)));
    for (const Block& block : section.blocks) {
      html += block.html;
    }
    html += "</section>\n";
  }
  return html;
}

std::string contentsLine(const Counts& counts) {
  std::string line;
  const auto add = [&line](std::size_t count, const std::string& counted) {
    if (count > 0) line += (line.empty() ? "" : ", ") + counted;
  };
  add(counts.tables, translatedCount(counts.tables, "{1} table", "{1} tables"));
  add(counts.charts, translatedCount(counts.charts, "{1} chart", "{1} charts"));
  add(counts.warnings, translatedCount(counts.warnings, "{1} warning", "{1} warnings"));
  add(counts.errors, translatedCount(counts.errors, "{1} error", "{1} errors"));
  return escapeHtml(line.empty() ? translated("Nothing to show") : line);
}

// What the page's scripts say: an element that they read. English is what they say without it.
std::string scriptWords() {
  static constexpr std::array kWords = {marked("Copy"),
                                        marked("Copy {1}"),
                                        marked("Copied"),
                                        marked("Not copied"),
                                        marked("table"),
                                        marked("{1} to {2}"),
                                        marked("Frequency"),
                                        marked("Values"),
                                        marked("no values"),
                                        marked("Variable"),
                                        marked("Range"),
                                        marked("Across"),
                                        marked("Up"),
                                        marked("Sample"),
                                        marked("Check"),
                                        marked("Verdict"),
                                        marked("pass"),
                                        marked("warn"),
                                        marked("fail"),
                                        marked("not judged"),
                                        marked("Observed"),
                                        marked("Expected"),
                                        marked("Observed cumulative probability"),
                                        marked("Expected cumulative probability"),
                                        marked("This build of Genostat draws no charts.")};
  if (language().code == "en") return {};
  const std::string json = jsonObject([&](JsonWriter& writer) {
    for (const char* word : kWords) {
      writeMember(writer, word, translated(word));
    }
  });
  return fmt::format("<script type=\"application/json\" id=\"words\">{}</script>\n", escapeScriptJson(json));
}

// "pt-BR", as pages name languages.
std::string languageOfPage() {
  std::string name = language().code;
  std::replace(name.begin(), name.end(), '_', '-');
  return escapeHtml(name);
}

std::string headHtml(const std::string& title, bool charts) {
  const ReportAssets& assets = reportAssets();
  std::string scripts(assets.script.policy);
  if (charts) scripts.append(" ").append(assets.charts.policy);
  std::string html =
      "<!DOCTYPE html>\n<html lang=\"" + languageOfPage() + "\">\n<head>\n<meta charset=\"utf-8\">\n";
  html += "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; style-src ";
  html.append(assets.style.policy).append("; script-src ").append(scripts);
  html += "; base-uri 'none'; form-action 'none'\">\n";
  html += "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n";
  html += "<meta name=\"color-scheme\" content=\"light dark\">\n";
  html += "<title>" + escapeHtml(title) + "</title>\n";
  return html.append("<style>").append(assets.style.text).append("</style>\n</head>\n");
}

}  // namespace

std::string renderHtmlReport(std::span<const std::string> items, const std::string& title) {
  Report report;
  for (const std::string& item : items) {
    report.add(parseJson(item));
  }
  const bool charts = report.counts().charts > 0;
  std::string html = headHtml(title, charts);
  html += "<body>\n<a class=\"skip\" href=\"#results\">" + escapeHtml(translated("Skip to the results")) +
          "</a>\n";
  html += outlineHtml(report.sections());
  html += "<main id=\"results\" tabindex=\"-1\">\n<header>\n<h1>" + escapeHtml(title) +
          "</h1>\n<p class=\"contents\">" + contentsLine(report.counts()) + "</p>\n</header>\n";
  html += sectionsHtml(report.sections()) + "<footer>" +
          escapeHtml(translated("Made with Genostat. Copyright 2026 the Genostat authors; MIT licence.")) +
          "</footer>\n</main>\n" + scriptWords();
  const ReportAssets& assets = reportAssets();
  html.append("<script>").append(assets.script.text).append("</script>\n");
  if (charts) html.append("<script>").append(assets.charts.text).append("</script>\n");
  return html + "</body>\n</html>\n";
}

}  // namespace genostat::standalone
