#include "standalone/console/qc/view.h"

#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>

#include "common/text/spreadsheet_text.h"
#include "platform/path_text.h"
#include "standalone/console/qc/summary.h"
#include "standalone/console/qc/text.h"
#include "standalone/console/view/output_file.h"
#include "standalone/data/record_reader.h"
#include "standalone/language/translation.h"
#include "standalone/syntax/diagnostic.h"
#include "standalone/syntax/text_file.h"

namespace genostat::standalone {

namespace {

// The report translates it; documents have it as it is.
constexpr const char* kQcProcedure = marked("Quality Control");

}  // namespace

QcView::QcView(const QcOptions& options, std::optional<common::OutputFile> csvCopy)
    : ConsoleView(options.session.output),
      csvCopy_(std::move(csvCopy)),
      safeCsv_(options.safeCsv),
      fastqcFolder_(platform::pathFromUtf8(options.fastqcFolder)) {
  document().leaveOut("table", "GENOSTAT");
  document().leaveOut("table", "GET DATA");
  // The summary's marks say the same.
  const bool tablesOnly = options.session.output == OutputFormat::Text && options.session.htmlFile.empty();
  if (tablesOnly) document().leaveOut("chart", "GET DATA");
}

void QcView::showDiagnostic(const Diagnostic& diagnostic) {
  Diagnostic placeless = diagnostic;
  placeless.range.reset();
  ConsoleView::showDiagnostic(placeless);
}

void QcView::showResults(const std::filesystem::path& csv) {
  std::vector<QcSample> samples;
  try {
    samples = readQcSamples(csv);
  } catch (const ImportError& error) {
    throw CommandError(translated("cannot read the results: {1}", {error.what()}));
  }
  if (samples.empty()) throw CommandError(translated("the results hold no samples"));
  showAs(renderQcTable(samples, style()) + renderQcFindings(samples, style()), [&] {
    document().addTable(kQcProcedure, qcTable(samples));
    const PivotTable findings = qcFindingsTable(samples);
    if (!findings.rows.empty()) document().addTable(kQcProcedure, findings);
  });
  if (csvCopy_) copyResults(csv);
  if (!fastqcFolder_.empty()) checkFastqcFolder(samples.size());
}

void QcView::copyResults(const std::filesystem::path& csv) const {
  const TextFile results = readTextFile(csv);
  if (!results.error.empty()) throw CommandError(results.error);
  try {
    writeOutputFile(*csvCopy_, safeCsv_ ? common::spreadsheetCsv(results.text) : results.text);
  } catch (const std::runtime_error& error) {
    throw CommandError(error.what());
  }
}

// The analysis only warns, but here they were asked for.
void QcView::checkFastqcFolder(std::size_t samples) const {
  std::size_t found = 0;
  std::error_code error;
  for (std::filesystem::directory_iterator entry(fastqcFolder_, error), end; !error && entry != end;
       entry.increment(error)) {
    std::error_code missing;
    if (std::filesystem::exists(entry->path() / "fastqc_data.txt", missing)) ++found;
  }
  if (found >= samples) return;
  throw CommandError(translated("FastQC's data files of {1} of {2} samples could not be written into {3}",
                                {std::to_string(samples - found), std::to_string(samples),
                                 quotedName(platform::pathToUtf8(fastqcFolder_))}));
}

}  // namespace genostat::standalone
