#include "standalone/data/dataset.h"

#include <algorithm>
#include <utility>

#include "common/text/ascii.h"
#include "standalone/language/translation.h"
#include "standalone/syntax/diagnostic.h"
#include "standalone/syntax/keyword.h"

namespace genostat::standalone {

const Column* Dataset::find(std::string_view variable) const {
  const auto column = std::ranges::find_if(
      columns, [&](const Column& candidate) { return common::equalsIgnoreCase(candidate.name, variable); });
  return column != columns.end() ? &*column : nullptr;
}

Dataset& DatasetStore::add(Dataset dataset) {
  deactivate();
  dataset.name.clear();
  datasets_.push_back(std::make_unique<Dataset>(std::move(dataset)));
  active_ = datasets_.back().get();
  return *active_;
}

void DatasetStore::nameActive(const std::string& name) {
  if (active_ == nullptr)
    throw CommandError(translated("no dataset is active that could be named {1}", {quoteForMessage(name)}));
  std::erase_if(datasets_, [&](const std::unique_ptr<Dataset>& other) {
    return other.get() != active_ && common::equalsIgnoreCase(other->name, name);
  });
  active_->name = name;
}

void DatasetStore::deactivate() {
  const Dataset* former = std::exchange(active_, nullptr);
  if (former != nullptr && former->name.empty()) remove(former);
}

void DatasetStore::activate(std::string_view name) {
  Dataset& dataset = named(name);
  if (&dataset == active_) return;
  deactivate();
  active_ = &dataset;
}

void DatasetStore::close(std::string_view name) {
  remove(&named(name));
}

void DatasetStore::closeAll() {
  active_ = nullptr;
  datasets_.clear();
}

Dataset& DatasetStore::named(std::string_view name) const {
  std::vector<std::string_view> names;
  for (const std::unique_ptr<Dataset>& dataset : datasets_) {
    if (dataset->name.empty()) continue;
    if (common::equalsIgnoreCase(dataset->name, name)) return *dataset;
    names.push_back(dataset->name);
  }
  const std::string hint = names.empty() ? translated("no dataset has a name")
                                         : explainKeyword(name, names, translated("dataset")).hint;
  throw CommandError(
      Diagnostic{{}, translated("no open dataset is named {1}", {quoteForMessage(name)}), {}, hint});
}

void DatasetStore::remove(const Dataset* dataset) {
  if (active_ == dataset) active_ = nullptr;
  std::erase_if(datasets_, [&](const std::unique_ptr<Dataset>& other) { return other.get() == dataset; });
}

}  // namespace genostat::standalone
