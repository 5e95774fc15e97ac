#include "standalone/console/view/console_view.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "common/cli/columns.h"
#include "common/text/printable_text.h"
#include "common/text/wrapped_text.h"
#include "platform/terminal.h"
#include "standalone/console/view/output_file.h"
#include "standalone/language/translation.h"
#include "standalone/output/html_report.h"

namespace genostat::standalone {

namespace {

constexpr int kWidthOfFiles = 100;

bool coloursAreUnwanted() {
  const char* noColour = std::getenv("NO_COLOR");
  return noColour != nullptr && *noColour != '\0';
}

TextStyle chooseStyle() {
  const platform::Terminal terminal = platform::standardOutputTerminal();
  TextStyle style;
  style.unicode = terminal.isUtf8;
  style.colour = terminal.isTerminal && terminal.movesCursor && !coloursAreUnwanted();
  const int wanted = common::columnsWanted();
  style.width = wanted > 0 ? wanted : terminal.isTerminal ? terminal.width : kWidthOfFiles;
  return style;
}

void writeToStandardError(std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stderr);
  std::fflush(stderr);
}

}  // namespace

std::string wrappedLines(std::string_view text, int width, std::string_view indent) {
  std::string lines;
  for (std::size_t begin = 0; begin <= text.size();) {
    const std::size_t end = std::min(text.find('\n', begin), text.size());
    const std::string_view line = text.substr(begin, end - begin);
    const int space = std::max(1, width - static_cast<int>(indent.size()));
    const auto pieces =
        line.starts_with(' ') ? std::vector{std::string(line)} : common::wrapText(line, space);
    for (const std::string& piece : pieces) {
      lines.append(lines.empty() ? "" : "\n").append(indent).append(piece);
    }
    begin = end + 1;
  }
  return lines;
}

ConsoleView::ConsoleView(OutputFormat format)
    : format_(format),
      style_(chooseStyle()),
      outputIsTerminal_(platform::standardOutputTerminal().isTerminal),
      live_(platform::standardErrorTerminal, writeToStandardError),
      progress_(live_) {
  if (format_ != OutputFormat::Text) return;
  document_.onItem([this](const std::string& item) {
    if (!recording_) show(renderItemAsText(item, style_));
  });
}

void ConsoleView::setFiles(std::optional<common::OutputFile> results,
                           std::optional<common::OutputFile> report, std::string title) {
  resultsFile_ = std::move(results);
  reportFile_ = std::move(report);
  title_ = std::move(title);
  if (!resultsFile_) return;
  style_.colour = false;
  style_.width = common::columnsWanted() > 0 ? common::columnsWanted() : kWidthOfFiles;
}

void ConsoleView::showNotice(const std::string& notice) {
  const std::string text = common::printableText(notice, common::LineBreaks::Keep);
  const int width = noticeWidth();
  writeLine(width > 0 ? wrappedLines(text, width) : text);
}

void ConsoleView::showDiagnostic(const Diagnostic& diagnostic) {
  const std::string text = renderDiagnostic(diagnostic);
  writeLine(shownDiagnostic(diagnostic, text));
  recording_ = true;
  document_.addText(diagnostic.severity == Diagnostic::Severity::Error ? "error" : "warning", text);
  recording_ = false;
}

// A terminal would break long lines in the middle of a word, and move a long excerpt's caret off its place.
std::string ConsoleView::shownDiagnostic(const Diagnostic& diagnostic, const std::string& rendered) const {
  const int width = noticeWidth();
  if (width == 0) return rendered;
  const auto parts = describeDiagnostic(diagnostic, static_cast<std::size_t>(width));
  std::string text = wrappedLines(parts.message, width);
  if (!parts.excerpt.empty()) text += '\n' + parts.excerpt;
  if (!parts.hint.empty()) text += '\n' + wrappedLines(parts.hint, width, "  ");
  return text;
}

int ConsoleView::noticeWidth() const {
  const platform::Terminal terminal = live_.terminal();
  return terminal.isTerminal ? std::max(terminal.width, 1) : 0;
}

void ConsoleView::jobsChanged(const std::vector<JobStatus>& jobs) {
  jobs_ = jobs;
  showProgress(progressWanted_);
}

void ConsoleView::showProgress(bool wanted) {
  progressWanted_ = wanted;
  const platform::Terminal terminal = live_.terminal();
  const bool shown = wanted && terminal.isTerminal && terminal.movesCursor;
  progress_.show(shown ? jobs_ : std::vector<JobStatus>());
}

void ConsoleView::fitToTerminal() {
  if (!resultsFile_) style_.width = chooseStyle().width;
}

void ConsoleView::showAs(std::string_view text, const std::function<void()>& addItems) {
  if (format_ == OutputFormat::Text) show(text);
  recording_ = true;
  addItems();
  recording_ = false;
}

bool ConsoleView::finish() {
  // Data is exact, but it must not steer a terminal.
  const bool onTerminal = outputIsTerminal_ && !resultsFile_;
  if (format_ == OutputFormat::Json) {
    const std::string json = document_.toJson();
    show(onTerminal ? common::printableText(json, common::LineBreaks::Keep) : json);
  }
  if (format_ == OutputFormat::Html) show(report());
  if (resultsFile_) writeFile(*resultsFile_, fileText_);
  if (reportFile_) writeFile(*reportFile_, report());
  return !outputFailed_;
}

std::string ConsoleView::report() const {
  return renderHtmlReport(document_.items(), title_);
}

void ConsoleView::show(std::string_view text) {
  if (resultsFile_) {
    fileText_ += text;
  } else {
    writeOutput(text);
  }
}

void ConsoleView::writeFile(const common::OutputFile& file, std::string_view text) {
  try {
    writeOutputFile(file, text);
  } catch (const std::runtime_error& error) {
    outputFailed_ = true;
    showDiagnostic({{}, error.what(), {}, {}});
  }
}

void ConsoleView::writeOutput(std::string_view text) {
  if (outputFailed_) return;
  int problem = 0;
  const auto write = [&] {
    errno = 0;
    const bool written =
        std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
    problem = written ? 0 : errno;
    outputFailed_ = !written;
  };
  // A slow reader of a pipe must not hold up what is written to the terminal.
  if (outputIsTerminal_) {
    live_.writeAbove(write);
  } else {
    write();
  }
  if (!outputFailed_) return;
  const std::string reason = std::generic_category().message(problem);
  showDiagnostic(
      {{}, translated("cannot write to standard output: {1}", {translatedReason(reason)}), {}, {}});
}

void ConsoleView::writeLine(const std::string& text) {
  makeRoom_();
  live_.writeAbove([line = text + '\n'] { writeToStandardError(line); });
}

}  // namespace genostat::standalone
