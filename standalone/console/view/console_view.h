// Shows a session on the standard streams.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/files/output_file.h"
#include "platform/suspension.h"
#include "standalone/console/options.h"
#include "standalone/console/view/live_lines.h"
#include "standalone/console/view/progress_display.h"
#include "standalone/output/output_document.h"
#include "standalone/output/text_renderer.h"
#include "standalone/session/session_view.h"

namespace genostat::standalone {

// Breaks lines at blanks; one that begins with a blank, of a list or an excerpt, stays as it is.
std::string wrappedLines(std::string_view text, int width, std::string_view indent = {});

class ConsoleView : public SessionView {
 public:
  explicit ConsoleView(OutputFormat format);

  // Files that get the results, which then do not go to standard output, and a report. Set before the session
  // begins; `title` heads the report.
  void setFiles(std::optional<common::OutputFile> results, std::optional<common::OutputFile> report,
                std::string title);

  // Called before anything is written to standard error. Set before the session begins.
  void beforeLines(std::function<void()> makeRoom) { makeRoom_ = std::move(makeRoom); }

  OutputDocument& document() { return document_; }

  void showNotice(const std::string& text) override;
  void showDiagnostic(const Diagnostic& diagnostic) override;
  void jobsChanged(const std::vector<JobStatus>& jobs) override;

  // From now on tables are as wide as the terminal is now.
  void fitToTerminal();

  // Whether the progress of jobs is shown where standard error is a terminal. At first it is.
  void showProgress(bool wanted);
  // Removes what is shown of progress for good. Any thread; waits for output that is being written.
  void endProgress() { live_.close(); }
  // Stops the program for as long as the user wants, with nothing of progress on the terminal.
  void suspend() { live_.writeAbove(platform::suspendProgram); }

  // Writes what is shown only at the end. False when results could not be written somewhere.
  bool finish();

 protected:
  const TextStyle& style() const { return style_; }
  // Adds items to the document that are shown as `text` where tables are.
  void showAs(std::string_view text, const std::function<void()>& addItems);
  // Whole lines for standard error, as they are.
  void writeLine(const std::string& text);

 private:
  void show(std::string_view text);
  void writeOutput(std::string_view text);
  void writeFile(const common::OutputFile& file, std::string_view text);
  std::string report() const;
  std::string shownDiagnostic(const Diagnostic& diagnostic, const std::string& rendered) const;
  // The columns in which notices are broken; 0: they are not, for a program or a file.
  int noticeWidth() const;

  const OutputFormat format_;
  TextStyle style_;
  const bool outputIsTerminal_;
  OutputDocument document_;
  std::optional<common::OutputFile> resultsFile_;
  std::optional<common::OutputFile> reportFile_;
  std::string title_;
  std::string fileText_;    // the tables so far, for the file of results
  bool recording_ = false;  // an item is added that has been shown
  bool outputFailed_ = false;
  std::function<void()> makeRoom_ = [] {};
  LiveLines live_;  // on standard error, where all lines pass through it
  ProgressDisplay progress_;
  std::vector<JobStatus> jobs_;  // that have not ended
  bool progressWanted_ = true;
};

}  // namespace genostat::standalone
