#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "common/files/output_file.h"
#include "standalone/console/options.h"
#include "standalone/console/qc/request.h"
#include "standalone/console/view/console_view.h"

namespace genostat::standalone {

// Shows a job's results as a summary in place of the tables that every job's own syntax makes.
class QcView : public ConsoleView {
 public:
  // `csvCopy` gets the result file.
  QcView(const QcOptions& options, const QcRequest& request, std::optional<common::OutputFile> csvCopy);

  void showResults(const std::filesystem::path& csv) override;
  // Without the place: the syntax that it lies in is nobody's own.
  void showDiagnostic(const Diagnostic& diagnostic) override;

 private:
  void copyResults(const std::filesystem::path& csv) const;
  void checkFastqcFolder(std::size_t samples) const;

  std::optional<common::OutputFile> csvCopy_;
  bool safeCsv_;
  std::string adapter_;  // as in the result's second column
  std::vector<QcLeftOut> leftOut_;
  std::filesystem::path fastqcFolder_;  // gets FastQC's data files from the analysis, unless it is empty
};

}  // namespace genostat::standalone
