#include "standalone/console/shell/tables.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "common/text/progress_text.h"
#include "standalone/language/translation.h"

namespace genostat::standalone {

namespace {

// A very wide table helps nobody; what is left out is said below it.
constexpr std::size_t kMostCells = 100'000;

std::string progressText(const JobProgress& progress) {
  std::string text =
      translated("{1} of {2} samples", {std::to_string(progress.finished), std::to_string(progress.samples)});
  if (progress.bytesTotal > 0) text += ", " + common::percentText(progress.bytesDone, progress.bytesTotal);
  return text;
}

CellValue shownCell(const Column& column, std::size_t row) {
  if (column.type == Column::Type::String) return textCell(column.texts[row]);
  const double number = column.numbers[row];
  return std::isnan(number) ? CellValue() : numberCell(number, column.decimals);
}

}  // namespace

PivotTable jobsTable(const std::vector<JobStatus>& jobs, const std::optional<JobProgress>& progress,
                     std::chrono::steady_clock::time_point now) {
  PivotTable table;
  table.title = translated("Jobs");
  table.columns = {{translated("State"), {}}, {translated("Elapsed"), {}}, {translated("Progress"), {}}};
  for (const JobStatus& job : jobs) {
    table.rows.push_back({job.name, {}});
    table.cells.push_back(
        {textCell(job.running ? translated("running") : translated("waiting")),
         textCell(common::clockText(std::floor(std::chrono::duration<double>(now - job.since).count()))),
         textCell(job.running && progress ? progressText(*progress) : std::string())});
  }
  return table;
}

PivotTable datasetsTable(const std::vector<std::unique_ptr<Dataset>>& datasets, const Dataset* active) {
  PivotTable table;
  table.title = translated("Datasets");
  table.columns = {{translated("Active"), {}}, {translated("Cases"), {}}, {translated("Variables"), {}}};
  for (const auto& dataset : datasets) {
    table.rows.push_back({dataset->name.empty() ? translated("(unnamed)") : dataset->name, {}});
    table.cells.push_back({textCell(dataset.get() == active ? "*" : ""),
                           numberCell(static_cast<double>(dataset->caseCount), 0),
                           numberCell(static_cast<double>(dataset->columns.size()), 0)});
  }
  return table;
}

PivotTable casesTable(const Dataset& dataset, const Column* only, std::size_t count) {
  PivotTable table;
  table.title = only != nullptr ? only->name : dataset.name.empty() ? translated("(unnamed)") : dataset.name;
  std::vector<const Column*> shown;
  for (const Column& column : dataset.columns) {
    if (only != nullptr && &column != only) continue;
    shown.push_back(&column);
    table.columns.push_back({column.name, {}});
  }
  count = std::min({count, dataset.caseCount, kMostCells / std::max<std::size_t>(1, shown.size())});
  for (std::size_t row = 0; row < count; ++row) {
    table.rows.push_back({std::to_string(row + 1), {}});
    std::vector<CellValue>& cells = table.cells.emplace_back();
    for (const Column* column : shown) {
      cells.push_back(shownCell(*column, row));
    }
  }
  if (count < dataset.caseCount) {
    table.footnotes.push_back(
        translated("the first {1} of {2} cases", {std::to_string(count), std::to_string(dataset.caseCount)}));
  }
  return table;
}

}  // namespace genostat::standalone
