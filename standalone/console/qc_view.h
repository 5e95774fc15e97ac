#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "standalone/console/console_view.h"
#include "standalone/console/output_file.h"

namespace genostat::console {

// Shows a job's results as a summary in place of the tables that every job's own syntax makes.
class QcView : public ConsoleView {
 public:
  // `csvCopy` gets the result file.
  QcView(const RunOptions& options, std::optional<OutputFile> csvCopy);

  void showResults(const std::filesystem::path& csv) override;
  // Without the place: the syntax that it lies in is nobody's own.
  void showDiagnostic(const standalone::Diagnostic& diagnostic) override;

 private:
  std::optional<OutputFile> csvCopy_;
};

}  // namespace genostat::console
