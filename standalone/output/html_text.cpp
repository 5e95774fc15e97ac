#include "standalone/output/html_parts.h"

#include <fmt/format.h>

namespace genostat::standalone {

namespace {

std::string_view entityFor(char c) {
  switch (c) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '"':
      return "&quot;";
    case '\'':
      return "&#39;";
    default:
      return {};
  }
}

}  // namespace

std::string escapeHtml(std::string_view text, common::LineBreaks lineBreaks) {
  std::string escaped;
  for (const char c : common::printableText(text, lineBreaks)) {
    const std::string_view entity = entityFor(c);
    if (entity.empty()) {
      escaped += c;
    } else {
      escaped += entity;
    }
  }
  return escaped;
}

std::string notesHtml(const std::vector<std::string>& notes, std::string_view id) {
  if (notes.empty()) return {};
  std::string html = "<ul class=\"notes\"";
  if (!id.empty()) html += fmt::format(R"( id="{}")", id);
  html += ">\n";
  for (const std::string& note : notes) {
    html += fmt::format("<li>{}</li>\n", escapeHtml(note));
  }
  return html + "</ul>\n";
}

std::string escapeScriptJson(std::string_view json) {
  // In JSON these three stand in strings only, where they may be written by their number.
  std::string escaped;
  escaped.reserve(json.size());
  for (const char c : json) {
    if (c == '<') {
      escaped += "\\u003C";
    } else if (c == '>') {
      escaped += "\\u003E";
    } else if (c == '&') {
      escaped += "\\u0026";
    } else {
      escaped += c;
    }
  }
  return escaped;
}

}  // namespace genostat::standalone
