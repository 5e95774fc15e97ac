#include "standalone/console/shell/view.h"

#include <vector>

#include "standalone/console/view/output_file.h"
#include "standalone/output/html_report.h"
#include "standalone/output/text_renderer.h"

namespace genostat::standalone {

void ShellView::showAnswer(const std::string& text) {
  if (answersAreOutput_) {
    showAs(text + '\n', [] {});
  } else {
    writeLine(text);
  }
}

void ShellView::showAnswer(const PivotTable& table) {
  std::string text = renderTableAsText(table, style());
  if (text.ends_with('\n')) text.pop_back();
  showAnswer(text);
}

void ShellView::showText(const std::string& text) {
  showAnswer(wrappedLines(text, style().width));
}

void ShellView::writeReport(const std::string& file, OutputFormat format, const std::string& title) {
  const common::OutputFile target = prepareOutputFile(file);
  const std::vector<std::string>& items = document().items();
  if (format == OutputFormat::Html) return writeOutputFile(target, renderHtmlReport(items, title));
  if (format == OutputFormat::Json) return writeOutputFile(target, document().toJson());
  TextStyle plain = style();
  plain.colour = false;
  std::string text;
  for (const std::string& item : items) {
    text += renderItemAsText(item, plain);
  }
  writeOutputFile(target, text);
}

}  // namespace genostat::standalone
