#include "standalone/output/text_renderer.h"

#include "common/text/wrapped_text.h"
#include "standalone/language/translation.h"
#include "standalone/output/table_json.h"

namespace genostat::standalone {

namespace {

std::string_view colourOf(std::string_view kind) {
  if (kind == "error") return "\x1B[31m";
  if (kind == "warning") return "\x1B[33m";
  return {};
}

// A diagnostic already says of itself that it is an error; other texts get their kind here.
bool namesItsKind(std::string_view text, std::string_view kind) {
  const std::string_view firstLine = text.substr(0, text.find('\n'));
  return firstLine.find(std::string(kind) + ": ") != std::string_view::npos;
}

std::string renderText(std::string_view kind, std::string_view text, const TextStyle& style) {
  const std::string_view colour = colourOf(kind);
  std::string rendered;
  if (!colour.empty() && !namesItsKind(text, kind)) rendered.append(kind).append(": ");
  rendered += common::printableText(text, common::LineBreaks::Keep);
  while (rendered.ends_with('\n')) {
    rendered.pop_back();
  }
  if (style.colour && !colour.empty()) rendered = std::string(colour) + rendered + "\x1B[0m";
  return rendered + '\n';
}

}  // namespace

std::string renderItemAsText(std::string_view itemJson, const TextStyle& style) {
  const rapidjson::Document item = parseJson(itemJson);
  const std::string_view type = stringMember(item, "type");
  if (type == "table") return '\n' + renderTableAsText(readTable(item), style);
  if (type == "chart") {
    return "\n[" +
           translated("chart: {1}; shown in HTML output",
                      {common::printableText(stringMember(item, "title"))}) +
           "]\n";
  }
  if (type == "text") return renderText(stringMember(item, "kind"), stringMember(item, "text"), style);
  return {};
}

}  // namespace genostat::standalone
