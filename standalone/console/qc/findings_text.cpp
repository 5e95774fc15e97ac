#include <fmt/format.h>

#include <ranges>
#include <string>
#include <vector>

#include "common/text/wrapped_text.h"
#include "standalone/console/qc/text.h"
#include "standalone/language/translation.h"

namespace genostat::standalone {

namespace {

constexpr std::size_t kMostNames = 8;    // of samples that are named for one check
constexpr std::size_t kMostFailed = 20;  // samples with failures that are listed
constexpr int kMarkIndent = 4;

std::string samplesOf(std::size_t count) {
  return translatedCount(count, "{1} sample", "{1} samples");
}

std::string titleOf(const QcCheck& check) {
  return translated(check.names().title);
}

// All of a name where there is no style.
std::string shownName(const std::string& name, const TextStyle* style) {
  const std::string printable = common::printableText(name);
  return style != nullptr ? shortenedName(printable, style->width / 2, style->unicode) : printable;
}

std::string namesOf(const std::vector<std::string>& samples, const TextStyle* style = nullptr) {
  std::vector<std::string> names;
  for (const std::string& sample : samples | std::views::take(kMostNames)) {
    names.push_back(shownName(sample, style));
  }
  const std::string joined = fmt::to_string(fmt::join(names, ", "));
  return samples.size() > kMostNames
             ? translated("{1} and {2} more", {joined, std::to_string(samples.size() - kMostNames)})
             : joined;
}

// A paragraph after a mark or a blank in its place.
std::string paragraph(std::string_view text, const std::string& mark, const TextStyle& style) {
  std::string lines;
  std::string front = "  " + mark + ' ';
  for (const std::string& line : common::wrapText(text, style.width - kMarkIndent)) {
    lines += front + line + '\n';
    front = std::string(kMarkIndent, ' ');
  }
  return lines;
}

std::string heading(const std::string& text, const TextStyle& style) {
  return '\n' + (style.colour ? "\x1B[1m" + text + "\x1B[0m" : text) + '\n';
}

std::string failedChecks(const QcSample& sample) {
  std::vector<std::string> titles;
  for (std::size_t i = 0; i < kCheckCount; ++i) {
    if (sample.verdicts[i] == Verdict::Fail) titles.push_back(titleOf(qcChecks()[i]));
  }
  return fmt::to_string(fmt::join(titles, ", "));
}

std::string failedSamples(const std::vector<QcSample>& samples, const TextStyle& style) {
  std::string text;
  std::size_t failed = 0;
  for (const std::size_t i : worstFirst(samples)) {
    if (samples[i].count(Verdict::Fail) == 0 || ++failed > kMostFailed) continue;
    text += paragraph(shownName(samples[i].label(), &style) + ": " + failedChecks(samples[i]),
                      paintedMark(Verdict::Fail, style), style);
  }
  if (failed > kMostFailed)
    text += paragraph(translatedCount(failed - kMostFailed, "and {1} more sample", "and {1} more samples"),
                      " ", style);
  return heading(translatedCount(failed, "{1} sample of {2} failed a check; worst first",
                                 "{1} samples of {2} failed a check; worst first",
                                 {std::to_string(samples.size())}),
                 style) +
         text;
}

}  // namespace

std::string renderQcUnread(const std::vector<QcSample>& samples, const TextStyle& style) {
  std::string text;
  std::size_t unread = 0;
  for (const QcSample& sample : samples) {
    if (!sample.isUnread()) continue;
    ++unread;
    text += paragraph(shownName(sample.label(), &style) + ": " + common::printableText(sample.unread),
                      paintedMark(Verdict::Fail, style), style);
  }
  if (unread == 0) return {};
  return heading(translatedCount(unread, "{1} sample of {2} could not be read",
                                 "{1} samples of {2} could not be read", {std::to_string(samples.size())}),
                 style) +
         text;
}

std::string renderQcFindings(const std::vector<QcSample>& samples, const TextStyle& style) {
  const std::vector<QcFinding> failures = findingsOf(samples, Verdict::Fail);
  const std::vector<QcFinding> warnings = findingsOf(samples, Verdict::Warn);
  if (failures.empty() && warnings.empty()) return '\n' + translated("No check failed or warned.") + '\n';
  std::string text =
      failures.empty() ? '\n' + translated("No check failed.") + '\n' : failedSamples(samples, style);
  if (!failures.empty()) text += heading(translated("What failed, and what people do about it"), style);
  for (const QcFinding& finding : failures) {
    text += paragraph(titleOf(*finding.check) + " (" + samplesOf(finding.samples.size()) + "). " +
                          translated(finding.check->meaning) + ' ' + translated(finding.check->remedy),
                      paintedMark(Verdict::Fail, style), style);
  }
  if (!warnings.empty()) text += heading(translated("Warnings"), style);
  for (const QcFinding& finding : warnings) {
    text += paragraph(titleOf(*finding.check) + ": " + namesOf(finding.samples, &style),
                      paintedMark(Verdict::Warn, style), style);
  }
  return text;
}

PivotTable qcFindingsTable(const std::vector<QcSample>& samples) {
  PivotTable table;
  table.title = translated("Checks that failed or warned");
  for (const char* label : {marked("Verdict"), marked("Samples"), marked("Which"), marked("What it means"),
                            marked("What people do about it")}) {
    table.columns.push_back({translated(label), {}});
  }
  for (const Verdict verdict : {Verdict::Fail, Verdict::Warn}) {
    for (const QcFinding& finding : findingsOf(samples, verdict)) {
      // A warning may have lesser reasons.
      const bool explained = verdict == Verdict::Fail;
      table.rows.push_back({titleOf(*finding.check), {}});
      table.cells.push_back({textCell(translated(common::verdictWord(verdict))),
                             numberCell(static_cast<double>(finding.samples.size()), 0),
                             textCell(namesOf(finding.samples)),
                             textCell(explained ? translated(finding.check->meaning) : std::string()),
                             textCell(explained ? translated(finding.check->remedy) : std::string())});
    }
  }
  return table;
}

}  // namespace genostat::standalone
