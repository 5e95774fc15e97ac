// Shows a session on the standard streams.
#pragma once

#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "standalone/console/options.h"
#include "standalone/console/output_file.h"
#include "standalone/output/output_document.h"
#include "standalone/output/text_renderer.h"
#include "standalone/session/session.h"

namespace genostat::console {

class ConsoleView : public standalone::SessionView {
 public:
  explicit ConsoleView(OutputFormat format);

  // Files that get the results, which then do not go to standard output, and a report. Set before the session
  // begins; `title` heads the report.
  void setFiles(std::optional<OutputFile> results, std::optional<OutputFile> report, std::string title);

  standalone::OutputDocument& document() { return document_; }

  void showNotice(const std::string& text) override;
  void showDiagnostic(const standalone::Diagnostic& diagnostic) override;

  // Writes what is shown only at the end. False when results could not be written somewhere.
  bool finish();

 protected:
  const standalone::TextStyle& style() const { return style_; }
  // Adds items to the document that are shown as `text` where tables are.
  void showAs(std::string_view text, const std::function<void()>& addItems);

 private:
  void show(std::string_view text);
  void writeOutput(std::string_view text);
  void writeFile(const OutputFile& file, std::string_view text);
  std::string report() const;
  void writeLine(const std::string& text);

  const OutputFormat format_;
  standalone::TextStyle style_;
  standalone::OutputDocument document_;
  std::optional<OutputFile> resultsFile_;
  std::optional<OutputFile> reportFile_;
  std::string title_;
  std::string fileText_;    // the tables so far, for the file of results
  bool recording_ = false;  // an item is added that has been shown
  bool outputFailed_ = false;
  std::mutex errorMutex_;  // one line at a time on standard error
};

}  // namespace genostat::console
