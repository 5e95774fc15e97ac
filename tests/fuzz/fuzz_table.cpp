// Any text as what a module's procedure hands over: it is refused, or its tables are shown without harm and
// stay the same when they are written and read again.
#include <cstdint>

#include "standalone/output/html_report.h"
#include "standalone/output/output_document.h"
#include "standalone/output/table_json.h"
#include "standalone/output/text_renderer.h"
#include "standalone/syntax/diagnostic.h"
#include "tests/fuzz/input_file.h"
#include "tests/fuzz/shown_text.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using genostat::test::require;
  namespace standalone = genostat::standalone;
  standalone::OutputDocument document;
  try {
    document.addProcedureJson("GENOSTAT", genostat::test::textOf(data, size));
  } catch (const standalone::CommandError& refusal) {
    genostat::test::requireHarmless(refusal.what());
    return 0;
  }
  standalone::OutputDocument again;
  for (const std::string& item : document.items()) {
    const rapidjson::Document json = standalone::parseJson(item);
    again.addTable("GENOSTAT", standalone::readTable(json));
    for (const int width : {20, 120}) {
      genostat::test::requireHarmless(standalone::renderItemAsText(item, {true, false, width}));
    }
  }
  require(again.items() == document.items(), "the tables are the same again");
  return 0;
}
