// Any file as a string table: each line is a text or a warning that points into it, and what was read can be
// written and read again.
#include <algorithm>
#include <cstdint>

#include "standalone/services/string_table_file.h"
#include "tests/fuzz/input_file.h"
#include "tests/fuzz/shown_text.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using genostat::test::require;
  namespace standalone = genostat::standalone;
  const std::string_view text = genostat::test::textOf(data, size);
  const standalone::StringTableFile table =
      standalone::readStringTable(genostat::test::writeInput("table.txt", text));
  const auto lines = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')) + 1;
  require(table.texts.size() + table.warnings.size() <= lines, "a line is one text or one warning");
  for (const standalone::Diagnostic& warning : table.warnings) {
    genostat::test::requireHarmless(standalone::renderDiagnostic(warning));
  }
  std::string written = "#\r\n";
  for (const auto& [key, value] : table.texts) {
    require(key.find_first_of("\t\n") == std::string::npos, "a key ends at the tab");
    written += key + '\t' + value + "\r\n";
  }
  const standalone::StringTableFile again =
      standalone::readStringTable(genostat::test::writeInput("written.txt", written));
  require(again.texts == table.texts && again.warnings.empty(), "the same texts are read again");
  return 0;
}
