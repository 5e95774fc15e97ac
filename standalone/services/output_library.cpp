// The host's output classes, over pivot tables: what a module builds cell by cell becomes
// one table of the session's output.

#include <charconv>

#include "host/output.h"
#include "host/procedure.h"
#include "standalone/output/output_document.h"
#include "standalone/output/table_json.h"
#include "standalone/services/current.h"
#include "standalone/syntax/diagnostic.h"

namespace standalone = genostat::standalone;

namespace {

constexpr int kTextCell = 1;

standalone::CellValue toCellValue(const Cell& cell, const standalone::NumberFormat& format) {
  const std::string& text = cell.value();
  if (cell.cellType() != kTextCell) {
    double number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    if (result.ec == std::errc() && result.ptr == text.data() + text.size()) return {number, format};
  }
  return {text, {}};
}

std::vector<standalone::Category> toCategories(const Descendants& descendants) {
  std::vector<standalone::Category> categories;
  for (const auto& cell : descendants.categories()) {
    categories.push_back({cell->value(), {}});
  }
  return categories;
}

std::string shownLabel(const Descendants& descendants) {
  return descendants.showLabel() ? descendants.label() : std::string();
}

}  // namespace

OPSCommonOutput::OPSCommonOutput(ACAVarValidSpecs* specs, ProcedureDataSource* dataSource,
                                 BpProcedure* procedure, InputAdapter* inputAdapter)
    : specs_(specs), dataSource_(dataSource), procedure_(procedure), inputAdapter_(inputAdapter) {}

struct StatJSONGenerator::Contents {
  std::string procedure;
  std::string subtitle;
  std::vector<standalone::PivotTable> tables;
};

StatJSONGenerator::StatJSONGenerator(const std::string& procedureName, const std::string& subtitle)
    : contents_(new Contents{procedureName, subtitle, {}}) {}

StatJSONGenerator::~StatJSONGenerator() = default;

std::string StatJSONGenerator::getProcedureStatJSON() const {
  return standalone::jsonObject([&](standalone::JsonWriter& writer) {
    standalone::writeMember(writer, "procedure", contents_->procedure);
    standalone::writeMember(writer, "subtitle", contents_->subtitle);
    standalone::writeArray(writer, "tables", contents_->tables, [&](const standalone::PivotTable& table) {
      writer.StartObject();
      standalone::writeTableMembers(writer, table);
      writer.EndObject();
    });
  });
}

void StatJSONConverter::generateOutput(const std::string& procedureJson) {
  standalone::OutputDocument* output = standalone::currentOutput();
  if (output == nullptr) return;
  try {
    output->addProcedureJson(procedure_ != nullptr ? procedure_->name() : std::string(), procedureJson);
  } catch (const standalone::CommandError& error) {
    // Modules do not expect exceptions from here.
    standalone::reportDiagnostic(error.diagnostic());
  }
}

struct Table::Contents {
  std::string title;
  bool titleHidden = false;
  int minColumnWidth = 0;
  int maxColumnWidth = 0;
  standalone::NumberFormat format;
  const Dimension* dimension = nullptr;
  const Cells* cells = nullptr;
};

Table::Table(StatJSONGenerator* generator, const std::string& title)
    : generator_(generator), contents_(std::make_unique<Contents>()) {
  contents_->title = title;
}

Table::~Table() = default;

void Table::set_table_title(const std::string& title) {
  contents_->title = title;
}
void Table::hide_title(bool hide) {
  contents_->titleHidden = hide;
}
void Table::set_min_data_column_width(int points) {
  contents_->minColumnWidth = points;
}
void Table::set_max_data_column_width(int points) {
  contents_->maxColumnWidth = points;
}

// A number is shown as wide as it is, so only the decimals matter.
void Table::set_default_cell_format(ZORV_Format::FormatType, int, int decimals) {
  contents_->format.decimals = decimals;
}

void Table::set_dimensions(const Dimension* dimension) {
  contents_->dimension = dimension;
}
void Table::set_cells(const Cells* cells) {
  contents_->cells = cells;
}

void Table::addTableToProcedureJSON() {
  if (generator_ == nullptr || contents_->dimension == nullptr || contents_->cells == nullptr) return;
  const Descendants& rows = contents_->dimension->rows();
  const Descendants& columns = contents_->dimension->columns();
  standalone::PivotTable table;
  if (!contents_->titleHidden) table.title = contents_->title;
  table.rowLabel = shownLabel(rows);
  table.columnLabel = shownLabel(columns);
  table.rows = toCategories(rows);
  table.columns = toCategories(columns);
  table.minColumnWidth = contents_->minColumnWidth;
  table.maxColumnWidth = contents_->maxColumnWidth;
  for (const Cells::Row& row : contents_->cells->rows()) {
    std::vector<standalone::CellValue>& cells = table.cells.emplace_back();
    for (const auto& cell : row) {
      cells.push_back(toCellValue(*cell, contents_->format));
    }
  }
  generator_->contents_->tables.push_back(std::move(table));
}

Cell::Cell(Table* table, int cellType) : table_(table), cellType_(cellType) {}
Descendants::Descendants(Table* table) : table_(table) {}
Cells::Cells(Table* table) : table_(table) {}
Dimension::Dimension(Table* table, std::unique_ptr<Descendants> rows, std::unique_ptr<Descendants> columns)
    : table_(table), rows_(std::move(rows)), columns_(std::move(columns)) {}
