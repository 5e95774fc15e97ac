// What is judged of a sample, and how it is judged.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace genostat::analysis {

enum class Verdict { None, Pass, Warn, Fail };

// "pass", "warn", "fail"; empty for none.
constexpr std::string_view verdictText(Verdict verdict) {
  constexpr std::array<std::string_view, 4> kTexts = {"", "pass", "warn", "fail"};
  return kTexts[static_cast<std::size_t>(verdict)];
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

inline constexpr std::array<std::string_view, 11> kCheckNames = {
    "basic_statistics",
    "per_base_sequence_quality",
    "per_sequence_quality_scores",
    "per_base_sequence_content",
    "per_sequence_gc_content",
    "per_base_n_content",
    "sequence_length_distribution",
    "sequence_duplication_levels",
    "overrepresented_sequences",
    "adapter_content",
    "per_tile_sequence_quality",
};

class Verdicts {
 public:
  Verdict& operator[](Check check) { return verdicts_[static_cast<std::size_t>(check)]; }
  Verdict operator[](Check check) const { return verdicts_[static_cast<std::size_t>(check)]; }

  // 100 (passes + half the warnings) / verdicts given; 0 when none is given.
  double score() const;

 private:
  std::array<Verdict, kCheckNames.size()> verdicts_{};
};

// For measures that are bad when large. Not-a-number passes.
constexpr Verdict judgeAbove(double value, double warn, double fail) {
  if (value > fail) return Verdict::Fail;
  return value > warn ? Verdict::Warn : Verdict::Pass;
}

}  // namespace genostat::analysis
