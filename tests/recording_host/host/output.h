#pragma once

#include <memory>
#include <utility>

#include "tests/recording_host/host/procedure.h"
#include "tests/recording_host/record.h"

namespace ZORV_Format {
enum FormatType : int { FORMAT_NUMBER = 5 };
}

class ACAVarValidSpecs : public recording::Object {
 public:
  ACAVarValidSpecs(bool numeric, bool shortString, bool longString)
      : Object("ACAVarValidSpecs", numeric, shortString, longString) {}
};

class InputAdapter : public recording::Object {};

class OPSCommonOutput : public recording::Object {
 public:
  OPSCommonOutput(ACAVarValidSpecs* specs, ProcedureDataSource* dataSource, BpProcedure* procedure,
                  InputAdapter* inputAdapter)
      : Object("OPSCommonOutput", specs, dataSource, procedure, inputAdapter) {}
};

class StatJSONGenerator : public recording::Object {
 public:
  StatJSONGenerator(const std::string& procedureName, const std::string& subtitle)
      : Object("StatJSONGenerator", procedureName, subtitle) {}
  std::string getProcedureStatJSON() const {
    return recording::answer(std::string("{}"), "StatJSONGenerator.getProcedureStatJSON");
  }
};

class StatJSONConverter : public recording::Object {
 public:
  explicit StatJSONConverter(BpProcedure* procedure) : Object("StatJSONConverter", procedure) {}
  void generateOutput(const std::string& json) { recording::call("StatJSONConverter.generateOutput", json); }
};

class Cells;
class Dimension;

class Table : public recording::Object {
 public:
  Table(StatJSONGenerator* generator, const std::string& title)
      : Object(recording::numbered("Table"), generator, title) {}
  void set_table_title(const std::string& title) { record("set_table_title", title); }
  void hide_title(bool hide) { record("hide_title", hide); }
  void set_min_data_column_width(int points) { record("set_min_data_column_width", points); }
  void set_max_data_column_width(int points) { record("set_max_data_column_width", points); }
  void set_default_cell_format(ZORV_Format::FormatType type, int width, int decimals) {
    record("set_default_cell_format", static_cast<int>(type), width, decimals);
  }
  void set_dimensions(const Dimension* dimension);
  void set_cells(const Cells* cells);
  void addTableToProcedureJSON() { record("addTableToProcedureJSON"); }

 private:
  template <typename... Arguments>
  void record(const char* method, const Arguments&... arguments) {
    recording::call(recordedName() + "." + method, arguments...);
  }
};

class Cell : public recording::Value {
 public:
  Cell(Table* table, int cellType) : Value(recording::numbered("Cell"), table, cellType) {}
  void setValue(const std::string& text) { recording::call(recordedName() + ".setValue", text); }
};

class Descendants : public recording::Object {
 public:
  explicit Descendants(Table* table) : Object(recording::numbered("Descendants"), table) {}
  void setLabel(const std::string& label) { recording::call(recordedName() + ".setLabel", label); }
  void setShowLabel(bool show) { recording::call(recordedName() + ".setShowLabel", show); }
  void addCell(std::unique_ptr<Cell> category) {
    recording::call(recordedName() + ".addCell", category);
    categories_.push_back(std::move(category));
  }

 private:
  std::vector<std::unique_ptr<Cell>> categories_;
};

class Cells : public recording::Object {
 public:
  using Row = std::vector<std::unique_ptr<Cell>>;

  explicit Cells(Table* table) : Object(recording::numbered("Cells"), table) {}
  void addCells(Row row) {
    recording::call(recordedName() + ".addCells", row);
    rows_.push_back(std::move(row));
  }

 private:
  std::vector<Row> rows_;
};

class Dimension : public recording::Object {
 public:
  Dimension(Table* table, std::unique_ptr<Descendants> rows, std::unique_ptr<Descendants> columns)
      : Object(recording::numbered("Dimension"), table, rows, columns),
        rows_(std::move(rows)),
        columns_(std::move(columns)) {}

 private:
  std::unique_ptr<Descendants> rows_;
  std::unique_ptr<Descendants> columns_;
};

inline void Table::set_dimensions(const Dimension* dimension) {
  record("set_dimensions", dimension);
}
inline void Table::set_cells(const Cells* cells) {
  record("set_cells", cells);
}
