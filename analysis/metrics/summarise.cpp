#include "analysis/metrics/summarise.h"

#include <algorithm>

#include "analysis/metrics/sums.h"

namespace genostat::analysis {

namespace {

// Files of the older encoding hold nothing below its Phred 0.
int offsetOf(const QualityCounts& qualities) {
  constexpr std::ptrdiff_t kOldOffset = 64;
  const auto firstUsed = std::find_if(qualities.begin(), qualities.end(), [](auto n) { return n > 0; });
  return firstUsed == qualities.end() || firstUsed - qualities.begin() < kOldOffset ? 33 : kOldOffset;
}

// The most frequent mean quality, the lowest of several.
Verdict judgeMeanQualities(const QualityCounts& reads, int phredOffset) {
  const auto mode = std::max_element(reads.begin(), reads.end());
  if (*mode == 0) return Verdict::None;
  const auto phred = mode - reads.begin() - phredOffset;
  return judgeBelow(static_cast<double>(phred), 28, 21);
}

Verdict judgeLengths(const LengthSummary& lengths) {
  if (lengths.shortest == 0) return Verdict::Fail;
  return lengths.shortest == lengths.longest ? Verdict::Pass : Verdict::Warn;
}

Verdict judgeOverrepresented(const std::vector<OverrepresentedSequence>& mostFrequentFirst) {
  if (mostFrequentFirst.empty()) return Verdict::Pass;
  return mostFrequentFirst.front().percent > 1 ? Verdict::Fail : Verdict::Warn;
}

std::optional<double> meanPhred(const QualityCounts& qualities, std::uint64_t bases, int phredOffset) {
  if (bases == 0) return std::nullopt;
  std::uint64_t sum = 0;
  for (std::size_t code = 0; code < qualities.size(); ++code) {
    sum += code * qualities[code];
  }
  return static_cast<double>(sum) / static_cast<double>(bases) - phredOffset;
}

std::optional<double> medianPhred(const QualityCounts& qualities, int phredOffset) {
  std::optional<double> median = medianCode(qualities);
  if (median) *median -= phredOffset;
  return median;
}

void judge(SampleResult& result) {
  Verdicts& verdicts = result.verdicts;
  verdicts[Check::BasicStatistics] = Verdict::Pass;
  verdicts[Check::PerBaseSequenceQuality] = judgeQuality(result.profile);
  verdicts[Check::PerSequenceQualityScores] =
      judgeMeanQualities(result.readsByMeanQuality, result.phredOffset);
  verdicts[Check::PerBaseSequenceContent] = judgeContent(result.profile);
  verdicts[Check::PerSequenceGcContent] =
      result.gc ? judgeAbove(result.gc->deviation, 15, 30) : Verdict::Pass;
  verdicts[Check::PerBaseNContent] = judgeN(result.profile);
  verdicts[Check::SequenceLengthDistribution] = judgeLengths(result.lengths);
  verdicts[Check::SequenceDuplicationLevels] = judgeBelow(result.duplication.deduplicatedPercent, 70, 50);
  verdicts[Check::OverrepresentedSequences] = judgeOverrepresented(result.overrepresented);
  verdicts[Check::AdapterContent] = result.adapters.verdict;
  verdicts[Check::PerTileSequenceQuality] = result.tiles.verdict;
}

}  // namespace

SampleResult summarise(const SampleCounts& counts, const DuplicationCounts& duplication,
                       const PositionSource& positionCounts, const ResultOptions& options) {
  SampleResult result;
  result.lengths = counts.lengths.summary();
  const LengthSummary& lengths = result.lengths;
  if (lengths.reads == 0) {
    result.verdicts[Check::BasicStatistics] = Verdict::Pass;
    return result;
  }

  PositionProfile profile(lengths.longest);
  PositionCounts atPosition;
  for (std::uint64_t position = 0; position < lengths.longest; ++position) {
    positionCounts(position, atPosition);
    profile.add(atPosition);
  }
  result.phredOffset = options.phredOffset.value_or(offsetOf(profile.qualities()));
  result.profile = profile.groups(result.phredOffset);
  result.meanPhred = meanPhred(profile.qualities(), lengths.bases, result.phredOffset);
  result.medianPhredFirst = medianPhred(profile.firstQualities(), result.phredOffset);
  result.medianPhredLast = medianPhred(counts.lastQualities, result.phredOffset);
  result.readsByMeanQuality = counts.meanQualities;

  const auto& bases = profile.bases();
  const std::uint64_t gc = bases[kBaseG] + bases[kBaseC];
  const std::uint64_t known = gc + bases[kBaseA] + bases[kBaseT];
  if (known > 0) result.gcPercent = percentOf(gc, known);
  if (lengths.bases > 0) result.unexpectedPercent = percentOf(bases[kBaseOther], lengths.bases);
  result.lowComplexityPercent = percentOf(counts.lowComplexityReads, lengths.reads);

  const std::vector<Probe> probes = probesOf(options.adapter);
  result.lengthBins = lengthBins(counts.lengths);
  result.gc = fitGcModel(counts.gc.distribution());
  result.duplication = estimateDuplication(duplication);
  result.overrepresented = overrepresentedSequences(duplication, probes);
  result.adapters = adapterContent(counts.adapters, probes, lengths.longest, lengths.reads);
  result.tiles = tileQuality(counts.tiles, result.phredOffset);
  judge(result);
  return result;
}

}  // namespace genostat::analysis
