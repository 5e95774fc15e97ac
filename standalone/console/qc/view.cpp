#include "standalone/console/qc/view.h"

#include <algorithm>
#include <cstddef>
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

// A line of the result table. `counts`: of reads, of bases, and the length.
std::string rowWithoutValues(const std::string& sample, const std::string& adapter,
                             const std::string& counts) {
  std::string quoted;
  for (const char c : sample) {
    quoted.append(c == '"' ? 2 : 1, c);
  }
  constexpr std::size_t kOthers = common::kResultColumns.size() - 5;
  return '"' + quoted + "\"," + adapter + ',' + counts + std::string(kOthers, ',') + '\n';
}

}  // namespace

QcView::QcView(const QcOptions& options, const QcRequest& request, std::optional<common::OutputFile> csvCopy)
    : ConsoleView(options.session.output),
      csvCopy_(std::move(csvCopy)),
      safeCsv_(options.safeCsv),
      adapter_(request.adapter.substr(0, request.adapter.find('('))),
      leftOut_(request.leftOut),
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
    samples = readQcSamples(csv, leftOut_);
  } catch (const ImportError& error) {
    throw CommandError(translated("cannot read the results: {1}", {error.what()}));
  }
  if (samples.empty()) throw CommandError(translated("the results hold no samples"));
  showAs(
      renderQcTable(samples, style()) + renderQcUnread(samples, style()) + renderQcFindings(samples, style()),
      [&] {
        document().addTable(kQcProcedure, qcTable(samples));
        const PivotTable unread = qcUnreadTable(samples);
        if (!unread.rows.empty()) document().addTable(kQcProcedure, unread);
        const PivotTable findings = qcFindingsTable(samples);
        if (!findings.rows.empty()) document().addTable(kQcProcedure, findings);
      });
  if (csvCopy_) copyResults(csv);
  if (!fastqcFolder_.empty())
    checkFastqcFolder(static_cast<std::size_t>(std::ranges::count_if(samples, &QcSample::measured)));
  const auto unread = static_cast<std::size_t>(std::ranges::count_if(samples, &QcSample::isUnread));
  if (unread > 0)
    throw CommandError(translatedCount(unread, "{1} sample of {2} could not be read",
                                       "{1} samples of {2} could not be read",
                                       {std::to_string(samples.size())}));
}

void QcView::copyResults(const std::filesystem::path& csv) const {
  TextFile results = readTextFile(csv);
  if (!results.error.empty()) throw CommandError(results.error);
  for (const QcLeftOut& one : leftOut_) {
    results.text += rowWithoutValues(sampleNameOf(one), adapter_, one.reason.empty() ? "0,0,0" : ",,");
  }
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
