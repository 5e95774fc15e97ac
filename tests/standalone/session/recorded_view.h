// A session's view that keeps what is shown, a line for each thing.
#pragma once

#include <mutex>
#include <string>

#include "standalone/session/session_view.h"

namespace genostat::test {

class RecordedView : public standalone::SessionView {
 public:
  void showNotice(const std::string& text) override {
    const std::lock_guard lock(mutex_);
    shown += text + "\n";
  }
  // With the first word of the text that it points to.
  void showDiagnostic(const standalone::Diagnostic& diagnostic) override {
    std::string line = diagnostic.severity == standalone::Diagnostic::Severity::Error ? "error" : "warning";
    if (const auto& range = diagnostic.range) {
      line += " at " + range->source->text.substr(range->begin, range->end - range->begin);
    }
    showNotice(line + ": " + diagnostic.message);
  }
  void jobsChanged(const std::vector<standalone::JobStatus>& jobs) override { open = jobs.size(); }

  std::string shown;
  std::size_t open = 0;  // jobs

 private:
  std::mutex mutex_;
};

}  // namespace genostat::test
