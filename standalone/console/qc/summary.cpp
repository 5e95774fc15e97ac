#include "standalone/console/qc/summary.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <limits>
#include <utility>

#include "common/files/fastq_names.h"
#include "common/files/path_fault.h"
#include "platform/path_text.h"
#include "standalone/console/qc/sample_names.h"
#include "standalone/data/text_import.h"
#include "standalone/language/translation.h"
#include "standalone/session/unread_samples.h"

namespace genostat::standalone {

namespace {

Dataset importResults(const std::filesystem::path& csv) {
  ImportRequest request;
  request.file = csv;
  request.firstCase = 2;
  for (const common::ResultColumn& column : common::kResultColumns) {
    ImportColumn& wanted = request.columns.emplace_back();
    wanted.name = column.name;
    wanted.kind = column.kind == common::ResultColumn::Kind::Number ? ImportColumn::Kind::Numeric
                                                                    : ImportColumn::Kind::String;
  }
  return importText(request).dataset;
}

QcSample sampleAt(const Dataset& results, std::size_t row) {
  const auto number = [&](std::string_view column) { return results.find(column)->numbers[row]; };
  QcSample sample;
  sample.length = results.find("Sequence_length")->texts[row];
  sample.reads = number("Total_Sequences");
  sample.bases = number("Total_Bases");
  sample.gc = number("GC");
  // Without the rounding error of the subtraction.
  sample.duplicates = std::round((100 - number("total_deduplicated_percentage")) * 1e6) / 1e6;
  sample.quality = number("mean_phred_all_reads");
  sample.score = number("qc_score");
  for (std::size_t i = 0; i < kCheckCount; ++i) {
    sample.verdicts[i] =
        common::verdictNamed(results.find(qcChecks()[i].names().column)->texts[row]).value_or(Verdict::None);
  }
  return sample;
}

std::uint64_t wholeNumber(double number) {
  return number >= 0 && number < 1e18 ? static_cast<std::uint64_t>(number) : 0;
}

CellValue cellOf(double number, int decimals) {
  return std::isnan(number) ? CellValue{} : numberCell(number, decimals);
}

}  // namespace

std::size_t QcSample::count(Verdict verdict) const {
  return static_cast<std::size_t>(std::ranges::count(verdicts, verdict));
}

std::string QcSample::label() const {
  return read == 0 ? name : name + " R" + std::to_string(read);
}

std::string sampleNameOf(const QcLeftOut& file) {
  return common::sampleName(platform::pathToUtf8(platform::pathFromUtf8(file.file).filename()));
}

std::vector<QcSample> readQcSamples(const std::filesystem::path& csv, const std::vector<QcLeftOut>& leftOut) {
  const Dataset results = importResults(csv);
  std::vector<std::string> names = results.find("Sample")->texts;
  std::vector<QcSample> inFileOrder;
  const std::vector<UnreadSample> unread = readUnreadSamples(csv);
  auto reason = unread.begin();
  for (std::size_t row = 0; row < results.caseCount; ++row) {
    QcSample& sample = inFileOrder.emplace_back(sampleAt(results, row));
    if (!std::isnan(sample.reads)) continue;
    sample.measured = false;
    sample.unread = reason != unread.end() ? (reason++)->reason : translated("it could not be read");
  }
  for (const QcLeftOut& file : leftOut) {
    names.push_back(sampleNameOf(file));
    QcSample& sample = inFileOrder.emplace_back();
    sample.measured = false;
    if (!file.reason.empty()) sample.unread = common::cannotRead(file.file, file.reason, translated);
    constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
    sample.reads = sample.bases = file.reason.empty() ? 0 : kNone;
    sample.gc = sample.duplicates = sample.quality = sample.score = kNone;
  }
  std::vector<std::uint64_t> reads;
  std::ranges::transform(inFileOrder, std::back_inserter(reads),
                         [](const QcSample& sample) { return wholeNumber(sample.reads); });
  const auto cleaned = cleanSampleNames(names, reads);
  std::vector<QcSample> samples;
  for (std::size_t row = 0; row < cleaned.size(); ++row) {
    const auto partner = cleaned[row].partner;
    if (partner && *partner < row) continue;  // shown beside it
    std::vector<std::size_t> rows = {row};
    if (partner) rows.push_back(*partner);
    if (partner && cleaned[row].read > cleaned[*partner].read) std::swap(rows[0], rows[1]);
    for (const std::size_t member : rows) {
      QcSample& sample = samples.emplace_back(std::move(inFileOrder[member]));
      sample.name = cleaned[member].name;
      sample.read = cleaned[member].read;
      sample.paired = partner.has_value();
      sample.first = member == rows.front();
    }
  }
  return samples;
}

std::vector<std::size_t> worstFirst(const std::vector<QcSample>& samples) {
  std::vector<std::size_t> worst;
  for (std::size_t i = 0; i < samples.size(); ++i) {
    if (samples[i].count(Verdict::Fail) + samples[i].count(Verdict::Warn) > 0) worst.push_back(i);
  }
  std::ranges::stable_sort(worst, std::greater<>(), [&](std::size_t i) {
    return std::pair(samples[i].count(Verdict::Fail), samples[i].count(Verdict::Warn));
  });
  return worst;
}

PivotTable qcTable(const std::vector<QcSample>& samples) {
  PivotTable table;
  table.title = translated("Samples");
  for (const char* label : {marked("Reads"), marked("Bases"), marked("Length"), marked("GC %"),
                            marked("Duplicates %"), marked("Mean Quality"), marked("Score")}) {
    table.columns.push_back({translated(label), {}});
  }
  Category checks{translated("Checks"), {}};
  for (const QcCheck& check : qcChecks()) {
    checks.children.push_back({translated(check.names().title), {}});
  }
  table.columns.push_back(std::move(checks));
  for (const QcSample& sample : samples) {
    if (sample.first) table.rows.push_back({sample.name, {}});
    if (sample.paired) table.rows.back().children.push_back({"R" + std::to_string(sample.read), {}});
    if (!sample.paired) table.rows.back().label = sample.label();
    std::vector<CellValue>& cells = table.cells.emplace_back();
    cells = {cellOf(sample.reads, 0), cellOf(sample.bases, 0),      textCell(sample.length),
             cellOf(sample.gc, 1),    cellOf(sample.duplicates, 1), cellOf(sample.quality, 1),
             cellOf(sample.score, 0)};
    for (const Verdict verdict : sample.verdicts) {
      cells.push_back(textCell(translated(common::verdictWord(verdict))));
    }
  }
  return table;
}

PivotTable qcUnreadTable(const std::vector<QcSample>& samples) {
  PivotTable table;
  table.title = translated("Samples that could not be read");
  table.columns.push_back({translated("Why"), {}});
  for (const QcSample& sample : samples) {
    if (!sample.isUnread()) continue;
    table.rows.push_back({sample.label(), {}});
    table.cells.push_back({textCell(sample.unread)});
  }
  return table;
}

std::vector<QcFinding> findingsOf(const std::vector<QcSample>& samples, Verdict verdict) {
  std::vector<QcFinding> findings;
  for (const std::size_t index : worstFirst(samples)) {
    for (std::size_t i = 0; i < kCheckCount; ++i) {
      if (samples[index].verdicts[i] != verdict) continue;
      const QcCheck* check = &qcChecks()[i];
      auto finding = std::ranges::find(findings, check, &QcFinding::check);
      if (finding == findings.end()) finding = findings.insert(findings.end(), {check, {}});
      finding->samples.push_back(samples[index].label());
    }
  }
  return findings;
}

}  // namespace genostat::standalone
