// The output of a session: one JSON document, built item by item.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/output/chart.h"
#include "standalone/output/pivot_table.h"

namespace genostat::standalone {

// Not thread-safe: the command thread owns it. The JSON form is described in
// docs/output-format.md.
class OutputDocument {
 public:
  OutputDocument();
  ~OutputDocument();
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
  void leaveOut(const std::string& type, const std::string& procedure);

  // Called with each new item as JSON text, right after it was added.
  void onItem(std::function<void(const std::string& itemJson)> listener);

  // The items so far, each as JSON text.
  const std::vector<std::string>& items() const;
  // The whole document.
  std::string toJson() const;

 private:
  struct Contents;
  std::unique_ptr<Contents> contents_;
};

}  // namespace genostat::standalone
