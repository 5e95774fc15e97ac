// Shows the session of genostat shell beside a line that is being typed.
#pragma once

#include <string>

#include "standalone/console/view/console_view.h"
#include "standalone/output/pivot_table.h"

namespace genostat::standalone {

class ShellView : public ConsoleView {
 public:
  explicit ShellView(const RunOptions& options)
      : ConsoleView(options.output),
        answersAreOutput_(options.output == OutputFormat::Text && options.outputFile.empty()) {}

  // What a shell word answers: no result, so that it is in no report.
  void showAnswer(const std::string& text);
  void showAnswer(const PivotTable& table);
  // The same with lines as wide as tables; lines that are indented stay as they are.
  void showText(const std::string& text);

  // Writes all results so far into a file. Throws std::runtime_error, a sentence for the user.
  void writeReport(const std::string& file, OutputFormat format, const std::string& title);

 private:
  const bool answersAreOutput_;  // or else notices, beside results that go elsewhere
};

}  // namespace genostat::standalone
