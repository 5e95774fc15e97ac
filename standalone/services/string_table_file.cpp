#include "standalone/services/string_table_file.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

#include "platform/path_text.h"
#include "standalone/language/translation.h"
#include "standalone/syntax/text_file.h"

namespace genostat::standalone {

namespace {

Diagnostic warningAt(const SourcePtr& source, std::size_t begin, std::size_t end, std::size_t line) {
  return {Diagnostic::Severity::Warning,
          translated("a line of a string table needs a tab between key and text; it is skipped"),
          SourceRange{source, begin, end, line},
          {}};
}

}  // namespace

StringTableFile readStringTable(const std::filesystem::path& file) {
  StringTableFile table;
  std::error_code ignored;
  if (!std::filesystem::exists(file, ignored)) return table;
  TextFile read = readTextFile(file);
  if (!read.error.empty()) {
    table.warnings.push_back({Diagnostic::Severity::Warning, read.error, {}, {}});
    return table;
  }
  const auto source =
      std::make_shared<const SourceText>(SourceText{platform::pathToUtf8(file), std::move(read.text)});
  const std::string_view text = source->text;
  std::size_t begin = 0;
  for (std::size_t number = 1; begin < text.size(); ++number) {
    const std::size_t next = std::min(text.find('\n', begin), text.size());
    std::string_view line = text.substr(begin, next - begin);
    if (line.ends_with('\r')) line.remove_suffix(1);
    const std::size_t tab = line.find('\t');
    if (line.starts_with('#') || line.find_first_not_of(" \t") == std::string_view::npos) {
      // A comment or a blank line.
    } else if (tab == std::string_view::npos) {
      table.warnings.push_back(warningAt(source, begin, begin + line.size(), number));
    } else {
      table.texts[std::string(line.substr(0, tab))] = line.substr(tab + 1);
    }
    begin = next + 1;
  }
  return table;
}

std::filesystem::path stringTableFile(const std::filesystem::path& folder, std::string_view name) {
  return folder / platform::pathFromUtf8(std::string(name) + ".txt");
}

}  // namespace genostat::standalone
