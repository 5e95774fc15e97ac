// Shows a session on the standard streams.
#pragma once

#include <mutex>
#include <string>
#include <string_view>

#include "standalone/console/options.h"
#include "standalone/output/output_document.h"
#include "standalone/output/text_renderer.h"
#include "standalone/session/session.h"

namespace genostat::console {

class ConsoleView : public standalone::SessionView {
 public:
  explicit ConsoleView(OutputFormat format);

  standalone::OutputDocument& document() { return document_; }

  void showNotice(const std::string& text) override;
  void showDiagnostic(const standalone::Diagnostic& diagnostic) override;

  // Writes what is shown only at the end. False when standard output could not be written.
  bool finish();

 private:
  void writeOutput(std::string_view text);
  void writeLine(const std::string& text);

  const OutputFormat format_;
  const standalone::TextStyle style_;
  standalone::OutputDocument document_;
  bool recording_ = false;  // an item is added that standard error has shown
  bool outputFailed_ = false;
  std::mutex errorMutex_;  // one line at a time on standard error
};

}  // namespace genostat::console
