// Datasets in memory, column by column.
#pragma once

#include <cstddef>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace genostat::standalone {

// One variable. Numeric: `numbers`, not-a-number for a missing value. String: `texts`.
struct Column {
  enum class Type { Numeric, String };

  std::string name;
  Type type = Type::String;
  int decimals = 0;  // numeric: as many as the values have, or as the variable's format says
  std::vector<double> numbers;
  std::vector<std::string> texts;
};

struct Dataset {
  std::string name;  // empty: not named yet
  std::vector<Column> columns;
  std::size_t caseCount = 0;

  // The variable of that name without regard to case, or null.
  const Column* find(std::string_view variable) const;
};

// The open datasets and which of them is active. Command thread only.
class DatasetStore {
 public:
  // Adds a dataset without a name and makes it active; replaces an active one without a name.
  Dataset& add(Dataset dataset);
  // Null when none is active.
  Dataset* active() { return active_; }
  // Names the active dataset; another of that name (without regard to case) is closed.
  // Throws CommandError when none is active.
  void nameActive(const std::string& name);
  // Leaves none active; closes an active one without a name, which nothing could reach any more.
  void deactivate();
  // Both throw CommandError for an unknown name. After closing the active one none is active.
  void activate(std::string_view name);
  void close(std::string_view name);
  void closeAll();

  const std::vector<std::unique_ptr<Dataset>>& all() const { return datasets_; }

 private:
  Dataset& named(std::string_view name) const;
  void remove(const Dataset* dataset);

  std::vector<std::unique_ptr<Dataset>> datasets_;
  Dataset* active_ = nullptr;
};

}  // namespace genostat::standalone
