#include <functional>
#include <optional>
#include <utility>

#include "standalone/language/translation.h"
#include "standalone/procedures/correlation_output.h"
#include "standalone/procedures/table_cells.h"

namespace genostat::standalone {

namespace {

std::string obstacleNote(Correlation::Obstacle obstacle) {
  switch (obstacle) {
    case Correlation::Obstacle::None:
      break;
    case Correlation::Obstacle::TooFewCases:
      return translated("Cannot be computed because fewer than two cases are valid.");
    case Correlation::Obstacle::Constant:
      return translated("Cannot be computed because at least one of the variables is constant.");
    case Correlation::Obstacle::BeyondRange:
      return translated("Cannot be computed because a value is infinite.");
  }
  return {};
}

// Builds one table, kind by kind of coefficient.
class CorrelationTable {
 public:
  CorrelationTable(std::string title, const CorrelationList& list, const CorrelationRequest& request)
      : list_(list), print_(request.print), deletion_(request.deletion) {
    table_.title = std::move(title);
    for (const std::size_t column : list.columns) {
      table_.columns.push_back({list.variables[column]->name, {}});
    }
  }

  void add(const CorrelationKind& kind) {
    if (deletion_ == Deletion::Listwise && table_.footnotes.empty()) {
      table_.footnotes.push_back(
          translated("Listwise N = {1}", {std::to_string(kind.matrix.at(0, 0).caseCount)}));
    }
    const std::vector<Row> rows = rowsFor(kind);
    std::vector<Category> variables;
    for (const std::size_t variable : list_.rows) {
      Category& labels = variables.emplace_back(Category{list_.variables[variable]->name, {}});
      for (const Row& row : rows) {
        labels.children.push_back({row.label, {}});
        std::vector<CellValue>& cells = table_.cells.emplace_back();
        for (const std::size_t other : list_.columns) {
          const bool hidden = print_.lower && list_.square && other > variable;
          cells.push_back(hidden ? CellValue{}
                                 : row.cell(kind.matrix.at(variable, other), variable == other));
        }
      }
    }
    if (kind.group.empty()) {
      table_.rows = std::move(variables);
    } else {
      table_.rows.push_back({kind.group, std::move(variables)});
    }
  }

  PivotTable finish() {
    const bool twoTailed = print_.showsTwoTailed();
    if (usedTwoStars_) {
      table_.footnotes.push_back(
          "**. " + translated(twoTailed ? "Correlation is significant at the 0.01 level (2-tailed)."
                                        : "Correlation is significant at the 0.01 level (1-tailed)."));
    }
    if (usedOneStar_) {
      table_.footnotes.push_back(
          "*. " + translated(twoTailed ? "Correlation is significant at the 0.05 level (2-tailed)."
                                       : "Correlation is significant at the 0.05 level (1-tailed)."));
    }
    table_.footnotes.insert(table_.footnotes.end(), notes_.begin(), notes_.end());
    return std::move(table_);
  }

 private:
  // What one row of the table shows of a pair of variables.
  struct Row {
    std::string label;
    std::function<CellValue(const Correlation&, bool self)> cell;
  };

  std::vector<Row> rowsFor(const CorrelationKind& kind) {
    // A variable's correlation with itself is known to be 1; among ranks it is written like the others.
    const int selfDecimals = kind.group.empty() ? 0 : 3;
    std::vector<Row> rows = {
        {kind.coefficient, [this, selfDecimals](const Correlation& correlation, bool self) {
           return coefficientCell(correlation, selfDecimals, self);
         }}};
    for (const bool twoTailed : {true, false}) {
      if (twoTailed ? !print_.showsTwoTailed() : !print_.oneTailed) continue;
      rows.push_back({translated(twoTailed ? "Sig. (2-tailed)" : "Sig. (1-tailed)"),
                      [this, twoTailed](const Correlation& correlation, bool self) {
                        return significanceCell(correlation, twoTailed, self);
                      }});
    }
    if (kind.products) {
      rows.push_back({translated("Sum of Squares and Cross-products"),
                      [](const Correlation& correlation, bool) { return cellOf(correlation.crossProduct); }});
      rows.push_back({translated("Covariance"),
                      [](const Correlation& correlation, bool) { return cellOf(correlation.covariance); }});
    }
    // Listwise there is one number for the whole table, in a footnote.
    if (deletion_ == Deletion::Pairwise) {
      rows.push_back(
          {"N", [](const Correlation& correlation, bool) { return countCell(correlation.caseCount); }});
    }
    return rows;
  }

  CellValue coefficientCell(const Correlation& correlation, int selfDecimals, bool self) {
    if (!correlation.coefficient) return blankWithNote(obstacleNote(correlation.obstacle));
    if (self) return numberCell(*correlation.coefficient, selfDecimals);
    CellValue cell = fractionCell(*correlation.coefficient);
    cell.mark = flagFor(correlation);
    return cell;
  }

  CellValue significanceCell(const Correlation& correlation, bool twoTailed, bool self) {
    const std::optional<double> significance = twoTailed ? correlation.twoTailed() : correlation.oneTailed;
    if (significance) return fractionCell(*significance);
    if (self || !correlation.coefficient) return {};
    return blankWithNote(translated("Cannot be computed because two cases leave no degrees of freedom."));
  }

  std::string flagFor(const Correlation& correlation) {
    const std::optional<double> significance =
        print_.showsTwoTailed() ? correlation.twoTailed() : correlation.oneTailed;
    if (!print_.flagged || !significance || *significance > 0.05) return {};
    const bool high = *significance <= 0.01;
    (high ? usedTwoStars_ : usedOneStar_) = true;
    return high ? "**" : "*";
  }

  // Blank, but for what leads to a footnote.
  CellValue blankWithNote(const std::string& text) { return withMark(textCell(""), markOf(notes_, text)); }

  const CorrelationList& list_;
  const CorrelationPrint& print_;
  Deletion deletion_;
  PivotTable table_;
  std::vector<std::string> notes_;  // those with letters, which come last
  bool usedOneStar_ = false;
  bool usedTwoStars_ = false;
};

}  // namespace

PivotTable correlationTable(std::string title, const CorrelationList& list, const CorrelationRequest& request,
                            const std::vector<CorrelationKind>& kinds) {
  CorrelationTable table(std::move(title), list, request);
  for (const CorrelationKind& kind : kinds) {
    table.add(kind);
  }
  return table.finish();
}

}  // namespace genostat::standalone
