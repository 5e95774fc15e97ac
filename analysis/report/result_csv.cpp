#include "analysis/report/result_csv.h"

#include <array>
#include <optional>
#include <ranges>
#include <utility>

#include "common/text/number_text.h"
#include "common/text/utf8.h"

namespace genostat::analysis {

namespace {

std::string decimals(std::optional<double> value) {
  return value ? common::fixedText(*value, 4) : std::string();
}

std::string shortest(std::optional<double> value) {
  return value ? common::shortestText(*value) : std::string();
}

std::string lengthRange(const LengthSummary& lengths) {
  std::string text = std::to_string(lengths.shortest);
  if (lengths.longest != lengths.shortest) text.append("-").append(std::to_string(lengths.longest));
  return text;
}

using FieldTexts = std::array<std::string, common::kResultColumns.size()>;

// In the order of the columns.
FieldTexts fieldTexts(const ResultRow& row) {
  if (!row.notRead.empty())
    return {common::toValidUtf8(row.sample), std::string(adapterKindName(row.adapter))};
  const SampleResult& result = row.result;
  const auto verdict = [&](Check check) { return std::string(common::verdictWord(result.verdicts[check])); };
  // Without reads there are none to be distinct, long or good.
  const auto ofReads = [&](std::string text) {
    return result.lengths.reads > 0 ? std::move(text) : std::string();
  };
  std::array texts = {
      common::toValidUtf8(row.sample),
      std::string(adapterKindName(row.adapter)),
      std::to_string(result.lengths.reads),
      std::to_string(result.lengths.bases),
      lengthRange(result.lengths),
      decimals(result.gcPercent),
      ofReads(common::fixedText(result.duplication.deduplicatedPercent, 6)),
      ofReads(decimals(result.lengths.mean)),
      ofReads(common::shortestText(result.lengths.median)),
      verdict(Check::BasicStatistics),
      verdict(Check::PerBaseSequenceQuality),
      verdict(Check::PerSequenceQualityScores),
      verdict(Check::PerBaseSequenceContent),
      verdict(Check::PerSequenceGcContent),
      verdict(Check::PerBaseNContent),
      verdict(Check::SequenceLengthDistribution),
      verdict(Check::SequenceDuplicationLevels),
      verdict(Check::OverrepresentedSequences),
      verdict(Check::AdapterContent),
      verdict(Check::PerTileSequenceQuality),
      ofReads(common::fixedText(result.verdicts.score(), 2)),
      shortest(result.medianPhredFirst),
      shortest(result.medianPhredLast),
      decimals(result.meanPhred),
      decimals(result.lowComplexityPercent),
      decimals(result.unexpectedPercent),
      std::to_string(result.overrepresented.size()),
  };
  return texts;
}

std::string lineOf(const auto& fields) {
  std::string line;
  for (const std::string_view field : fields) {
    line.append(csvField(field)) += ',';
  }
  line.back() = '\n';
  return line;
}

}  // namespace

std::string csvField(std::string_view text) {
  if (text.find_first_of(",\"\r\n") == std::string_view::npos) return std::string(text);
  std::string field = "\"";
  for (const char c : text) {
    if (c == '"') field += '"';
    field += c;
  }
  return field + '"';
}

std::vector<ColumnText> columnTexts(const ResultRow& row) {
  std::vector<ColumnText> columns;
  FieldTexts texts = fieldTexts(row);
  for (std::size_t i = 0; i < texts.size(); ++i) {
    columns.push_back({common::kResultColumns[i], std::move(texts[i])});
  }
  return columns;
}

std::string csvHeader() {
  return lineOf(std::views::transform(common::kResultColumns, &common::ResultColumn::name));
}

std::string csvLine(const ResultRow& row) {
  return lineOf(fieldTexts(row));
}

}  // namespace genostat::analysis
