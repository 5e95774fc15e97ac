// The output of a session: one JSON document, built item by item.
#pragma once

#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "standalone/output/chart.h"
#include "standalone/output/pivot_table.h"

namespace genostat::standalone {

// Not thread-safe: the command thread owns it. The JSON form is described in
// docs/output-format.md.
class OutputDocument {
 public:
  OutputDocument() = default;
  OutputDocument(const OutputDocument&) = delete;
  OutputDocument& operator=(const OutputDocument&) = delete;

  // What is added from now on belongs to a further command of the text called `source`.
  void beginCommand(std::string_view source);
  // Adds a table that `procedure` ("DESCRIPTIVES") made.
  void addTable(std::string_view procedure, const PivotTable& table);
  void addChart(std::string_view procedure, const Chart& chart);
  // Adds a line of text, such as an error message. `kind`: "error", "warning" or "note".
  void addText(std::string_view kind, std::string_view text);
  // Adds what a module's procedure handed over as JSON text (see host/output.h).
  // Throws CommandError when the text is not such a document.
  void addProcedureJson(std::string_view procedure, std::string_view json);

  // From now on items of this type ("table", "chart") are not taken from this procedure.
  void leaveOut(const std::string& type, const std::string& procedure) { leftOut_.emplace(type, procedure); }

  // Called with each new item as JSON text, right after it was added.
  void onItem(std::function<void(const std::string& itemJson)> listener) { listener_ = std::move(listener); }

  // The items so far, each as JSON text.
  const std::vector<std::string>& items() const { return items_; }
  // The whole document.
  std::string toJson() const;

 private:
  // `writeMembers` adds what an item of this type has beyond what all have.
  template <typename WriteMembers>
  void add(const char* type, WriteMembers writeMembers);
  bool leavesOut(std::string_view type, std::string_view procedure) const;
  void addSquaredUp(std::string_view procedure, const PivotTable& table);

  std::vector<std::string> items_;
  std::function<void(const std::string&)> listener_;
  std::string source_;
  std::set<std::pair<std::string, std::string>> leftOut_;  // type and procedure
  unsigned command_ = 0;                                   // 0: what stands outside of commands
};

}  // namespace genostat::standalone
