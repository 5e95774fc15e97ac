#include "standalone/procedures/correlation_table.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "standalone/language/translation.h"

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

// Blank, but for what leads to a footnote.
CellValue blankWithMark(std::string mark) {
  CellValue cell = textCell("");
  cell.mark = std::move(mark);
  return cell;
}

CellValue productCell(const std::optional<double>& product) {
  return product ? numberCell(*product, 3) : CellValue{};
}

std::string letterMark(std::size_t index) {
  return {static_cast<char>('a' + index)};
}

}  // namespace

CorrelationTable::CorrelationTable(std::string title, const CorrelationList& list,
                                   const CorrelationPrint& print, Deletion deletion)
    : list_(list), print_(print), deletion_(deletion) {
  table_.title = std::move(title);
  for (const std::size_t column : list.columns) {
    table_.columns.push_back({list.variables[column]->name, {}});
  }
}

void CorrelationTable::add(const Kind& kind, const CorrelationMatrix& matrix) {
  if (deletion_ == Deletion::Listwise && table_.footnotes.empty()) {
    table_.footnotes.push_back(translated("Listwise N = {1}", {std::to_string(matrix.at(0, 0).caseCount)}));
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
        cells.push_back(hidden ? CellValue{} : row.cell(matrix.at(variable, other), variable == other));
      }
    }
  }
  if (kind.group.empty()) {
    table_.rows = std::move(variables);
  } else {
    table_.rows.push_back({kind.group, std::move(variables)});
  }
}

std::vector<CorrelationTable::Row> CorrelationTable::rowsFor(const Kind& kind) {
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
    rows.push_back(
        {translated("Sum of Squares and Cross-products"),
         [](const Correlation& correlation, bool) { return productCell(correlation.crossProduct); }});
    rows.push_back({translated("Covariance"), [](const Correlation& correlation, bool) {
                      return productCell(correlation.covariance);
                    }});
  }
  // Listwise there is one number for the whole table, in a footnote.
  if (deletion_ == Deletion::Pairwise) {
    rows.push_back({"N", [](const Correlation& correlation, bool) {
                      return numberCell(static_cast<double>(correlation.caseCount), 0);
                    }});
  }
  return rows;
}

CellValue CorrelationTable::coefficientCell(const Correlation& correlation, int selfDecimals, bool self) {
  if (!correlation.coefficient) return blankWithMark(footnote(obstacleNote(correlation.obstacle)));
  if (self) return numberCell(*correlation.coefficient, selfDecimals);
  CellValue cell = fractionCell(*correlation.coefficient);
  cell.mark = flagFor(correlation);
  return cell;
}

CellValue CorrelationTable::significanceCell(const Correlation& correlation, bool twoTailed, bool self) {
  const std::optional<double> significance = twoTailed ? correlation.twoTailed() : correlation.oneTailed;
  if (significance) return fractionCell(*significance);
  if (self || !correlation.coefficient) return {};
  return blankWithMark(
      footnote(translated("Cannot be computed because two cases leave no degrees of freedom.")));
}

std::string CorrelationTable::flagFor(const Correlation& correlation) {
  const std::optional<double> significance =
      print_.showsTwoTailed() ? correlation.twoTailed() : correlation.oneTailed;
  if (!print_.flagged || !significance || *significance > 0.05) return {};
  const bool high = *significance <= 0.01;
  (high ? usedTwoStars_ : usedOneStar_) = true;
  return high ? "**" : "*";
}

std::string CorrelationTable::footnote(const std::string& text) {
  const auto found = std::ranges::find(notes_, text);
  const auto index = static_cast<std::size_t>(found - notes_.begin());
  if (found == notes_.end()) notes_.push_back(text);
  return letterMark(index);
}

PivotTable CorrelationTable::finish() {
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
  for (std::size_t i = 0; i < notes_.size(); ++i) {
    table_.footnotes.push_back(letterMark(i) + ". " + notes_[i]);
  }
  return std::move(table_);
}

}  // namespace genostat::standalone
