// The checks of quality control and the columns of its result: the analyser writes them, the host reads them.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

#include "common/text/ascii.h"

namespace genostat::common {

enum class Verdict { None, Pass, Warn, Fail };

// Indexed by Verdict.
inline constexpr std::array<std::string_view, 4> kVerdictWords = {"", "pass", "warn", "fail"};
static_assert(static_cast<std::size_t>(Verdict::Fail) + 1 == kVerdictWords.size());

constexpr std::string_view verdictWord(Verdict verdict) {
  return kVerdictWords[static_cast<std::size_t>(verdict)];
}

// Reads a word back, in any case. None for the empty text; nothing for other words.
constexpr std::optional<Verdict> verdictNamed(std::string_view word) {
  for (std::size_t i = 0; i < kVerdictWords.size(); ++i) {
    if (std::ranges::equal(word, kVerdictWords[i], {}, lowerLetter)) return static_cast<Verdict>(i);
  }
  return std::nullopt;
}

// In the order of the result's columns.
enum class Check : std::size_t {
  BasicStatistics,
  PerBaseSequenceQuality,
  PerSequenceQualityScores,
  PerBaseSequenceContent,
  PerSequenceGcContent,
  PerBaseNContent,
  SequenceLengthDistribution,
  SequenceDuplicationLevels,
  OverrepresentedSequences,
  AdapterContent,
  PerTileSequenceQuality,
};

struct CheckNames {
  std::string_view column;  // in the result
  std::string_view title;   // as the field writes it
  // Stands for the title where there is no room: the initial of the first word that no other title has, or
  // of the last word.
  char letter;
};

// Indexed by Check.
inline constexpr std::array<CheckNames, 11> kChecks = {{
    {"basic_statistics", "Basic Statistics", 'B'},
    {"per_base_sequence_quality", "Per base sequence quality", 'Q'},
    {"per_sequence_quality_scores", "Per sequence quality scores", 'S'},
    {"per_base_sequence_content", "Per base sequence content", 'C'},
    {"per_sequence_gc_content", "Per sequence GC content", 'G'},
    {"per_base_n_content", "Per base N content", 'N'},
    {"sequence_length_distribution", "Sequence Length Distribution", 'L'},
    {"sequence_duplication_levels", "Sequence Duplication Levels", 'D'},
    {"overrepresented_sequences", "Overrepresented sequences", 'O'},
    {"adapter_content", "Adapter Content", 'A'},
    {"per_tile_sequence_quality", "Per tile sequence quality", 'T'},
}};
static_assert(static_cast<std::size_t>(Check::PerTileSequenceQuality) + 1 == kChecks.size());

constexpr const CheckNames& namesOf(Check check) {
  return kChecks[static_cast<std::size_t>(check)];
}

struct ResultColumn {
  enum class Kind { Text, Number, Verdict };
  std::string_view name;
  Kind kind;

  static constexpr ResultColumn text(std::string_view name) { return {name, Kind::Text}; }
  static constexpr ResultColumn number(std::string_view name) { return {name, Kind::Number}; }
  static constexpr ResultColumn verdict(Check check) { return {namesOf(check).column, Kind::Verdict}; }
};

// Readers find the columns by number as well as by name: neither order nor names may change.
inline constexpr std::array<ResultColumn, 27> kResultColumns = {
    ResultColumn::text("Sample"),
    ResultColumn::text("Adapter_Type"),
    ResultColumn::number("Total_Sequences"),
    ResultColumn::number("Total_Bases"),
    ResultColumn::text("Sequence_length"),
    ResultColumn::number("GC"),
    ResultColumn::number("total_deduplicated_percentage"),
    ResultColumn::number("avg_sequence_length"),
    ResultColumn::number("median_sequence_length"),
    ResultColumn::verdict(Check::BasicStatistics),
    ResultColumn::verdict(Check::PerBaseSequenceQuality),
    ResultColumn::verdict(Check::PerSequenceQualityScores),
    ResultColumn::verdict(Check::PerBaseSequenceContent),
    ResultColumn::verdict(Check::PerSequenceGcContent),
    ResultColumn::verdict(Check::PerBaseNContent),
    ResultColumn::verdict(Check::SequenceLengthDistribution),
    ResultColumn::verdict(Check::SequenceDuplicationLevels),
    ResultColumn::verdict(Check::OverrepresentedSequences),
    ResultColumn::verdict(Check::AdapterContent),
    ResultColumn::verdict(Check::PerTileSequenceQuality),
    ResultColumn::number("qc_score"),
    ResultColumn::number("median_phred_first_10bp"),
    ResultColumn::number("median_phred_last_10bp"),
    ResultColumn::number("mean_phred_all_reads"),
    ResultColumn::number("low_complexity_percentage"),
    ResultColumn::number("unexpected_bases_percentage"),
    ResultColumn::number("overrepresented_seq_count"),
};

}  // namespace genostat::common
