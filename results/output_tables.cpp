#include "results/output_tables.h"

#include <algorithm>
#include <memory>
#include <new>
#include <vector>

#include "entry/record/texts.h"
#include "host/output.h"
#include "host/procedure.h"

namespace genostat {

namespace {

using Texts = std::vector<std::string>;

constexpr int kTextCell = 1;
constexpr int kMinColumnWidth = 100;
constexpr int kMaxColumnWidth = 700;
constexpr int kCellWidth = 10;
constexpr int kCellDecimals = 4;

std::unique_ptr<Cell> textCell(Table* table, const std::string& text) {
  auto cell = std::make_unique<Cell>(table, kTextCell);
  cell->setValue(text);
  return cell;
}

const std::string& entryOrEmpty(const Texts& entries, std::size_t index) {
  static const std::string empty;
  return index < entries.size() ? entries[index] : empty;
}

// Adds a table of texts. Labels and columns may differ in number; what is missing is left empty.
void addTextTable(StatJSONGenerator& generator, const std::string& title, const Texts& columnLabels,
                  const Texts& rowLabels, const std::vector<Texts>& columns) {
  std::unique_ptr<Table> table(new (std::nothrow) Table(&generator, title));
  if (!table) return;
  table->set_table_title(title);
  table->hide_title(false);
  table->set_min_data_column_width(kMinColumnWidth);
  table->set_max_data_column_width(kMaxColumnWidth);
  table->set_default_cell_format(ZORV_Format::FORMAT_NUMBER, kCellWidth, kCellDecimals);

  std::unique_ptr<Descendants> rows(new (std::nothrow) Descendants(table.get()));
  std::unique_ptr<Descendants> headers(new (std::nothrow) Descendants(table.get()));
  std::unique_ptr<Cells> cells(new (std::nothrow) Cells(table.get()));
  if (!rows || !headers || !cells) return;
  rows->setLabel("  ");
  rows->setShowLabel(false);
  for (const std::string& label : columnLabels) {
    headers->addCell(textCell(table.get(), label));
  }

  std::size_t rowCount = 0;
  for (const Texts& column : columns) {
    rowCount = std::max(rowCount, column.size());
  }
  for (std::size_t row = 0; row < rowCount; ++row) {
    rows->addCell(textCell(table.get(), entryOrEmpty(rowLabels, row)));
  }
  for (std::size_t row = 0; row < rowCount; ++row) {
    Cells::Row values;
    values.reserve(columns.size());
    for (const Texts& column : columns) {
      values.push_back(textCell(table.get(), entryOrEmpty(column, row)));
    }
    cells->addCells(std::move(values));
  }

  auto dimension = std::make_unique<Dimension>(table.get(), std::move(rows), std::move(headers));
  table->set_dimensions(dimension.get());
  table->set_cells(cells.get());
  table->addTableToProcedureJSON();
  // The host expects this order.
  table.reset();
  dimension.reset();
  cells.reset();
}

}  // namespace

void showOutputTables(const GenoJobSettings& settings, BpProcedure* procedure, const Localiser& localised,
                      const std::function<void()>& writeMessage) {
  ProcedureDataSource dataSource;
  auto specs = std::make_unique<ACAVarValidSpecs>(true, true, true);
  const OPSCommonOutput commonOutput(specs.get(), &dataSource, procedure, nullptr);
  StatJSONConverter converter(procedure);
  StatJSONGenerator generator(texts::kProcedureName, "");

  addTextTable(generator, localised(texts::kSummary), {localised(texts::kCount)},
               {localised(texts::kSamples), localised(texts::kVariables)},
               {{std::to_string(settings.sampleCount()), std::to_string(settings.variableCount())}});

  writeMessage();
  const Texts rowLabels = {localised(texts::kMessage), localised(texts::kDataset)};
  // One empty column label for each row label, although the values form one column.
  const Texts columnLabels(rowLabels.size());
  const std::string dataset = settings.sampleCount() < 1 ? localised(texts::kNone) : settings.jobName();
  addTextTable(generator, localised(texts::kDetails), columnLabels, rowLabels,
               {{localised(settings.messageText()), dataset}});

  converter.generateOutput(generator.getProcedureStatJSON());
  // The host expects them to go before all that was made after them.
  specs.reset();
}

}  // namespace genostat
