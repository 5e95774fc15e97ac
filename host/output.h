// Host output library: pivot tables, built cell by cell and handed to the host
// as one JSON text per procedure. Used on the command thread only.
//
// A table goes: Table on a generator; Descendants for the row and the column
// categories; Cells for the values, one row at a time; one Dimension; then
// addTableToProcedureJSON. Until then nothing is shown. After it the module deletes
// the Table, the Dimension and the Cells, in this order; what it handed over to these
// (both Descendants, every Cell) is the host's.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

class BpProcedure;
class ProcedureDataSource;

namespace ZORV_Format {
// Display formats by the host's numbers; 5 is a plain number of width and decimals.
enum FormatType : int { FORMAT_NUMBER = 5 };
}  // namespace ZORV_Format

// Which kinds of variables a procedure accepts.
class ACAVarValidSpecs {
 public:
  ACAVarValidSpecs(bool numeric, bool shortString, bool longString)
      : numeric_(numeric), shortString_(shortString), longString_(longString) {}

  bool numeric() const { return numeric_; }
  bool shortString() const { return shortString_; }
  bool longString() const { return longString_; }

 private:
  bool numeric_;
  bool shortString_;
  bool longString_;
};

class InputAdapter;

// Ties a procedure's output to its data. Borrows all its arguments; the adapter may be null.
class OPSCommonOutput {
 public:
  OPSCommonOutput(ACAVarValidSpecs* specs, ProcedureDataSource* dataSource, BpProcedure* procedure,
                  InputAdapter* inputAdapter);

 private:
  ACAVarValidSpecs* specs_;
  ProcedureDataSource* dataSource_;
  BpProcedure* procedure_;
  InputAdapter* inputAdapter_;
};

// Collects the tables of one procedure.
class StatJSONGenerator {
 public:
  StatJSONGenerator(const std::string& procedureName, const std::string& subtitle);
  ~StatJSONGenerator();
  StatJSONGenerator(const StatJSONGenerator&) = delete;
  StatJSONGenerator& operator=(const StatJSONGenerator&) = delete;

  // Everything added so far, as JSON text.
  std::string getProcedureStatJSON() const;

 private:
  friend class Table;
  struct Contents;
  std::unique_ptr<Contents> contents_;
};

// Takes a procedure's JSON text into the session's output.
class StatJSONConverter {
 public:
  explicit StatJSONConverter(BpProcedure* procedure) : procedure_(procedure) {}

  void generateOutput(const std::string& procedureJson);

 private:
  BpProcedure* procedure_;
};

class Cells;
class Dimension;

class Table {
 public:
  // The generator outlives the table.
  Table(StatJSONGenerator* generator, const std::string& title);
  ~Table();
  Table(const Table&) = delete;
  Table& operator=(const Table&) = delete;

  void set_table_title(const std::string& title);
  void hide_title(bool hide);
  void set_min_data_column_width(int points);
  void set_max_data_column_width(int points);
  void set_default_cell_format(ZORV_Format::FormatType type, int width, int decimals);
  // Both are borrowed until addTableToProcedureJSON returns.
  void set_dimensions(const Dimension* dimension);
  void set_cells(const Cells* cells);
  void addTableToProcedureJSON();

 private:
  struct Contents;
  StatJSONGenerator* generator_;
  std::unique_ptr<Contents> contents_;
};

// One label or one value. Cell type 1 is text.
class Cell {
 public:
  Cell(Table* table, int cellType);

  void setValue(const std::string& text) { value_ = text; }
  const std::string& value() const { return value_; }
  int cellType() const { return cellType_; }

 private:
  Table* table_;
  int cellType_;
  std::string value_;
};

// The categories along one side of a table.
class Descendants {
 public:
  explicit Descendants(Table* table);

  void setLabel(const std::string& label) { label_ = label; }
  void setShowLabel(bool show) { showLabel_ = show; }
  // Takes over the category.
  void addCell(std::unique_ptr<Cell> category) { categories_.push_back(std::move(category)); }

  const std::string& label() const { return label_; }
  bool showLabel() const { return showLabel_; }
  const std::vector<std::unique_ptr<Cell>>& categories() const { return categories_; }

 private:
  Table* table_;
  std::string label_;
  bool showLabel_ = true;
  std::vector<std::unique_ptr<Cell>> categories_;
};

// The values of a table, row after row.
class Cells {
 public:
  using Row = std::vector<std::unique_ptr<Cell>>;

  explicit Cells(Table* table);

  // Takes over the row's cells.
  void addCells(Row row) { rows_.push_back(std::move(row)); }
  const std::vector<Row>& rows() const { return rows_; }

 private:
  Table* table_;
  std::vector<Row> rows_;
};

class Dimension {
 public:
  // Takes over both.
  Dimension(Table* table, std::unique_ptr<Descendants> rows, std::unique_ptr<Descendants> columns);

  const Descendants& rows() const { return *rows_; }
  const Descendants& columns() const { return *columns_; }

 private:
  Table* table_;
  std::unique_ptr<Descendants> rows_;
  std::unique_ptr<Descendants> columns_;
};
