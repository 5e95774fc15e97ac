#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "common/files/output_file.h"
#include "standalone/console/view/console_view.h"

namespace genostat::standalone {

// Shows a job's results as a summary in place of the tables that every job's own syntax makes.
class QcView : public ConsoleView {
 public:
  // `csvCopy` gets the result file. The analysis writes FastQC's data files into `fastqcFolder`, unless that
  // is empty.
  QcView(const RunOptions& options, std::optional<common::OutputFile> csvCopy,
         std::filesystem::path fastqcFolder);

  void showResults(const std::filesystem::path& csv) override;
  // Without the place: the syntax that it lies in is nobody's own.
  void showDiagnostic(const Diagnostic& diagnostic) override;

 private:
  void copyResults(const std::filesystem::path& csv) const;
  void checkFastqcFolder(std::size_t samples) const;

  std::optional<common::OutputFile> csvCopy_;
  std::filesystem::path fastqcFolder_;
};

}  // namespace genostat::standalone
