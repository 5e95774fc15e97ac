// Command syntax for the host, made from named templates with {{NAME}} placeholders.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>

namespace genostat {

// 64-bit FNV-1a (Fowler, Noll, Vo).
struct NameHash {
  std::size_t operator()(std::string_view name) const;
};

using TemplateTable = std::unordered_map<std::string, std::string, NameHash>;
using ValueMap = std::unordered_map<std::string, std::string, NameHash>;

// The eight templates by name.
TemplateTable buildTemplateTable();

// Fills a template and drops the lines that are left blank; empty for an unknown name. Values are
// written as they stand: not escaped, and not searched for placeholders. A placeholder without a
// value, or whose name is not made of letters, digits and _, stays. The text after a {{ that is
// never closed appears a second time, preceded by what stands before it since the last placeholder.
std::string fillTemplate(const TemplateTable& table, const std::string& name, const ValueMap& values);

}  // namespace genostat
