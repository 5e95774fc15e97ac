// The tables of CORRELATIONS and NONPAR CORR.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "standalone/output/pivot_table.h"
#include "standalone/procedures/correlation_command.h"
#include "standalone/statistics/correlation_matrix.h"

namespace genostat::standalone {

// Builds one table, kind by kind of coefficient. The list and `print` outlive it.
class CorrelationTable {
 public:
  CorrelationTable(std::string title, const CorrelationList& list, const CorrelationPrint& print,
                   Deletion deletion);

  struct Kind {
    std::string group;        // heads the rows of this kind; empty: they are not grouped
    std::string coefficient;  // "Pearson Correlation"
    bool products = false;    // with rows of cross-products and covariances
  };
  void add(const Kind& kind, const CorrelationMatrix& matrix);

  PivotTable finish();

 private:
  // What one row of the table shows of a pair of variables.
  struct Row {
    std::string label;
    std::function<CellValue(const Correlation&, bool self)> cell;
  };
  std::vector<Row> rowsFor(const Kind& kind);
  CellValue coefficientCell(const Correlation& correlation, int selfDecimals, bool self);
  CellValue significanceCell(const Correlation& correlation, bool twoTailed, bool self);
  std::string flagFor(const Correlation& correlation);
  // The letter that leads to this footnote.
  std::string footnote(const std::string& text);

  const CorrelationList& list_;
  const CorrelationPrint& print_;
  Deletion deletion_;
  PivotTable table_;
  std::vector<std::string> notes_;  // a, b, c...
  bool usedOneStar_ = false;
  bool usedTwoStars_ = false;
};

}  // namespace genostat::standalone
