#include "results/syntax_templates.h"

#include <algorithm>
#include <cstdint>

namespace genostat {

namespace {

constexpr char kBlanks[] = " \t\n\v\f\r";

bool isPlaceholderName(std::string_view name) {
  return !name.empty() && std::all_of(name.begin(), name.end(), [](char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_';
  });
}

std::string substitute(std::string_view text, const ValueMap& values) {
  std::string filled;
  std::size_t position = 0;
  while (true) {
    const std::size_t open = text.find("{{", position);
    if (open == std::string_view::npos) return filled.append(text.substr(position));
    filled.append(text.substr(position, open - position));
    const std::size_t close = text.find("}}", open + 2);
    if (close == std::string_view::npos) {
      return filled.append(text.substr(open)).append(text.substr(position));
    }
    const std::string_view name = text.substr(open + 2, close - open - 2);
    const auto value = isPlaceholderName(name) ? values.find(std::string(name)) : values.end();
    filled.append(value != values.end() ? std::string_view(value->second)
                                        : text.substr(open, close + 2 - open));
    position = close + 2;
  }
}

std::string dropBlankLines(std::string_view text) {
  std::string kept;
  bool first = true;
  for (std::size_t position = 0; position <= text.size();) {
    const std::size_t end = std::min(text.find('\n', position), text.size());
    const std::string_view line = text.substr(position, end - position);
    if (line.find_first_not_of(kBlanks) != std::string_view::npos) {
      if (!first) kept += '\n';
      kept.append(line);
      first = false;
    }
    position = end + 1;
  }
  return kept;
}

}  // namespace

std::size_t NameHash::operator()(std::string_view name) const {
  std::uint64_t hash = 14695981039346656037u;
  for (const char c : name) {
    hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211u;
  }
  return static_cast<std::size_t>(hash);
}

std::string fillTemplate(const TemplateTable& table, const std::string& name, const ValueMap& values) {
  const auto found = table.find(name);
  return found == table.end() ? std::string() : dropBlankLines(substitute(found->second, values));
}

}  // namespace genostat
