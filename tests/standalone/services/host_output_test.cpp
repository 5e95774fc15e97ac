// A module's way of building tables, down to what the terminal shows.

#include "host/output.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "host/procedure.h"
#include "standalone/output/output_document.h"
#include "standalone/output/text_renderer.h"
#include "standalone/services/current.h"
#include "standalone/syntax/diagnostic.h"

namespace genostat::standalone {
namespace {

using Texts = std::vector<std::string>;

void addTable(StatJSONGenerator& generator, const std::string& title, const Texts& columns, const Texts& rows,
              const Texts& values) {
  Table table(&generator, title);
  table.set_table_title(title);
  table.hide_title(false);
  table.set_min_data_column_width(100);
  table.set_max_data_column_width(700);
  table.set_default_cell_format(ZORV_Format::FORMAT_NUMBER, 10, 4);
  const auto cell = [&](const std::string& text) {
    auto made = std::make_unique<Cell>(&table, 1);
    made->setValue(text);
    return made;
  };
  auto rowCategories = std::make_unique<Descendants>(&table);
  auto columnCategories = std::make_unique<Descendants>(&table);
  Cells cells(&table);
  rowCategories->setLabel("  ");
  rowCategories->setShowLabel(false);
  for (const std::string& label : columns) {
    columnCategories->addCell(cell(label));
  }
  for (const std::string& label : rows) {
    rowCategories->addCell(cell(label));
  }
  for (const std::string& value : values) {
    Cells::Row row;
    row.push_back(cell(value));
    cells.addCells(std::move(row));
  }
  const Dimension dimension(&table, std::move(rowCategories), std::move(columnCategories));
  table.set_dimensions(&dimension);
  table.set_cells(&cells);
  table.addTableToProcedureJSON();
}

TEST(HostOutput, ShowsTheTablesOfAModule) {
  OutputDocument document;
  std::string shown;
  document.onItem([&](const std::string& item) {
    EXPECT_NE(item.find(R"("procedure":"GENOSTAT")"), std::string::npos);
    EXPECT_NE(item.find(R"("minColumnWidth":100,"maxColumnWidth":700)"), std::string::npos);
    shown += renderItemAsText(item, {true, false, 60});
  });
  Texts reported;
  const SessionScope scope(
      {nullptr, &document, [&](const Diagnostic& problem) { reported.push_back(problem.message); }});
  BpProcedure procedure("GENOSTAT", 1);
  StatJSONConverter converter(&procedure);
  StatJSONGenerator generator("GENOSTAT", "");
  addTable(generator, "Summary", {"Count"}, {"Samples", "Variables"}, {"2", "-25"});
  // Two empty column labels over one column of values.
  addTable(generator, "Details", {"", ""}, {"Message", "Dataset"},
           {"Valid:2 fastQ file(s) detected.", "run_1"});
  converter.generateOutput(generator.getProcedureStatJSON());
  EXPECT_EQ(shown, R"(
Summary
┌───────────┬───────┐
│           │ Count │
├───────────┼───────┤
│ Samples   │     2 │
│ Variables │   -25 │
└───────────┴───────┘

Details
┌─────────┬─────────────────────────────────┐
│ Message │ Valid:2 fastQ file(s) detected. │
│ Dataset │ run_1                           │
└─────────┴─────────────────────────────────┘
)");
  converter.generateOutput("{");
  ASSERT_EQ(reported.size(), 1U);
  EXPECT_EQ(reported[0].substr(0, 45), "GENOSTAT: the output JSON is malformed: Missi");
}

TEST(HostOutput, GoesNowhereWithoutASession) {
  StatJSONConverter(nullptr).generateOutput(StatJSONGenerator("GENOSTAT", "").getProcedureStatJSON());
}

}  // namespace
}  // namespace genostat::standalone
