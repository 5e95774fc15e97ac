// What a job writes: each output gets the samples one by one, in their order, and appears when all are there.
#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/report/fastqc_folder.h"
#include "analysis/report/result_csv.h"
#include "analysis/request/adapter.h"
#include "analysis/request/failure.h"
#include "analysis/request/samples.h"
#include "common/files/output_file.h"

namespace genostat::analysis {

// Finds early what would make an output fail, or cost the reads themselves: then the failure has this `code`.
// The trial file does not stay: a job that is killed while it reads leaves nothing behind.
void tryOutput(const std::filesystem::path& target, const std::vector<Sample>& samples, ExitCode code,
               common::PlaceLink link);

// The same for a folder, which need not exist.
void tryFolder(const std::filesystem::path& folder);

// A text that goes to a file or to standard output. Throws a Failure (OutputFailed).
class TextOutput {
 public:
  // Standard output.
  TextOutput() = default;
  TextOutput(const std::filesystem::path& target, common::PlaceLink link);

  void write(std::string_view text);
  void finish();

 private:
  std::filesystem::path target_;
  std::optional<common::StreamedFile> file_;  // none for standard output
  std::string pending_;                       // for that
};

// One output of a job.
class JobOutput {
 public:
  virtual ~JobOutput() = default;
  virtual void add(const ResultRow& row) = 0;
  virtual void finish() {}
};

// `isSafe`: no cell that a spreadsheet computes.
std::unique_ptr<JobOutput> csvOutput(TextOutput text, bool isSafe);
std::unique_ptr<JobOutput> jsonOutput(TextOutput text, const Adapter& adapter);
// FastQC's data files. Where a failure is only to be reported, that ends this output.
std::unique_ptr<JobOutput> fastqcOutput(const std::filesystem::path& folder,
                                        const std::vector<Sample>& samples,
                                        std::function<void(const std::string&)> warn = {});
// Why samples were not read: a JSON document, which is written only where there is one.
std::unique_ptr<JobOutput> notReadOutput(const std::filesystem::path& target, common::PlaceLink link);

}  // namespace genostat::analysis
