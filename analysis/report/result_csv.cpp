#include "analysis/report/result_csv.h"

#include <array>
#include <optional>

#include "analysis/report/number_text.h"
#include "common/text/utf8.h"

namespace genostat::analysis {

namespace {

struct Column {
  std::string_view name;
  std::string (*text)(const ResultRow&);
  bool isNumber = true;
};

std::string decimals(std::optional<double> value) {
  return value ? fixedText(*value, 4) : std::string();
}

std::string shortest(std::optional<double> value) {
  return value ? shortestText(*value) : std::string();
}

std::string lengthRange(const LengthSummary& lengths) {
  std::string text = integerText(lengths.shortest);
  if (lengths.longest != lengths.shortest) text.append("-").append(integerText(lengths.longest));
  return text;
}

template <Check check>
constexpr Column kVerdict = {
    kCheckNames[static_cast<std::size_t>(check)],
    [](const ResultRow& row) { return std::string(verdictText(row.result.verdicts[check])); }, false};

// Readers find the columns by number as well as by name: neither order nor names may change.
constexpr std::array kColumns = {
    Column{"Sample", [](const ResultRow& row) { return common::toValidUtf8(row.sample); }, false},
    Column{"Adapter_Type", [](const ResultRow& row) { return std::string(adapterKindName(row.adapter)); },
           false},
    Column{"Total_Sequences", [](const ResultRow& row) { return integerText(row.result.lengths.reads); }},
    Column{"Total_Bases", [](const ResultRow& row) { return integerText(row.result.lengths.bases); }},
    Column{"Sequence_length", [](const ResultRow& row) { return lengthRange(row.result.lengths); }, false},
    Column{"GC", [](const ResultRow& row) { return decimals(row.result.gcPercent); }},
    Column{"total_deduplicated_percentage",
           [](const ResultRow& row) { return fixedText(row.result.duplication.deduplicatedPercent, 6); }},
    Column{"avg_sequence_length", [](const ResultRow& row) { return decimals(row.result.lengths.mean); }},
    Column{"median_sequence_length",
           [](const ResultRow& row) { return shortestText(row.result.lengths.median); }},
    kVerdict<Check::BasicStatistics>,
    kVerdict<Check::PerBaseSequenceQuality>,
    kVerdict<Check::PerSequenceQualityScores>,
    kVerdict<Check::PerBaseSequenceContent>,
    kVerdict<Check::PerSequenceGcContent>,
    kVerdict<Check::PerBaseNContent>,
    kVerdict<Check::SequenceLengthDistribution>,
    kVerdict<Check::SequenceDuplicationLevels>,
    kVerdict<Check::OverrepresentedSequences>,
    kVerdict<Check::AdapterContent>,
    kVerdict<Check::PerTileSequenceQuality>,
    Column{"qc_score", [](const ResultRow& row) { return fixedText(row.result.verdicts.score(), 2); }},
    Column{"median_phred_first_10bp",
           [](const ResultRow& row) { return shortest(row.result.medianPhredFirst); }},
    Column{"median_phred_last_10bp",
           [](const ResultRow& row) { return shortest(row.result.medianPhredLast); }},
    Column{"mean_phred_all_reads", [](const ResultRow& row) { return decimals(row.result.meanPhred); }},
    Column{"low_complexity_percentage",
           [](const ResultRow& row) { return decimals(row.result.lowComplexityPercent); }},
    Column{"unexpected_bases_percentage",
           [](const ResultRow& row) { return decimals(row.result.unexpectedPercent); }},
    Column{"overrepresented_seq_count",
           [](const ResultRow& row) { return integerText(row.result.overrepresented.size()); }},
};
static_assert(kColumns.size() == 27);

// One line, each field made by `text` from its column.
template <typename FieldText>
void appendLine(std::string& csv, FieldText text) {
  for (std::size_t i = 0; i < kColumns.size(); ++i) {
    if (i > 0) csv += ',';
    csv += csvField(text(kColumns[i]));
  }
  csv += '\n';
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
  std::vector<ColumnText> texts;
  texts.reserve(kColumns.size());
  for (const Column& column : kColumns) {
    texts.push_back({column.name, column.text(row), column.isNumber});
  }
  return texts;
}

std::string resultCsv(const std::vector<ResultRow>& rows) {
  std::string csv;
  appendLine(csv, [](const Column& column) { return std::string(column.name); });
  for (const ResultRow& row : rows) {
    appendLine(csv, [&](const Column& column) { return column.text(row); });
  }
  return csv;
}

}  // namespace genostat::analysis
