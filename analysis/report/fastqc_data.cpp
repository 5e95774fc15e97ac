#include "analysis/report/fastqc_data.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

#include "common/text/number_text.h"
#include "common/text/utf8.h"

namespace genostat::analysis {

namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

// With a decimal point in any case.
std::string decimalText(double value) {
  if (!std::isfinite(value)) return "NaN";
  std::string text = common::shortestText(value + 0.0);
  if (text.find('.') == std::string::npos) text += ".0";
  return text;
}

std::string rangeText(std::uint64_t first, std::uint64_t last) {
  return first == last ? std::to_string(first) : std::to_string(first) + "-" + std::to_string(last);
}

std::string rangeText(const PositionGroup& group) {
  return rangeText(group.first, group.last);
}

// Control characters, and the others at which some readers end a line, as spaces.
std::string withoutLineEnds(std::string_view text) {
  std::string line = common::toValidUtf8(text);
  std::replace_if(
      line.begin(), line.end(),
      [](char c) {
        const auto code = static_cast<unsigned char>(c);
        return code < 0x20 || code == 0x7F;
      },
      ' ');
  for (const std::string_view end : {"\xC2\x85", "\xE2\x80\xA8", "\xE2\x80\xA9"}) {
    for (std::size_t at = line.find(end); at != std::string::npos; at = line.find(end, at)) {
      line.replace(at, end.size(), " ");
    }
  }
  return line;
}

// A read may hold any character.
std::string sequenceText(std::string text) {
  std::replace_if(
      text.begin(), text.end(),
      [](char c) { return (c < 'A' || c > 'Z') && c != '.' && c != '-' && c != '*'; }, '?');
  return text;
}

// A number of bases with at most one decimal, cut off: "18.7 kbp".
std::string basesText(std::uint64_t bases) {
  struct Unit {
    std::uint64_t size;
    const char* name;
  };
  for (const Unit& unit : {Unit{1'000'000'000, " Gbp"}, Unit{1'000'000, " Mbp"}, Unit{1'000, " kbp"}}) {
    if (bases < unit.size) continue;
    const std::uint64_t tenths = bases / (unit.size / 10);
    std::string text = std::to_string(tenths / 10);
    if (tenths % 10 != 0) text += "." + std::to_string(tenths % 10);
    return text + unit.name;
  }
  return std::to_string(bases) + " bp";
}

// Writes one module after another.
class FastqcText {
 public:
  explicit FastqcText(const Verdicts& verdicts) : verdicts_(verdicts) {}

  // The module of a check. Without a verdict it is left out; `write` fills in the rest.
  template <typename Write>
  void module(Check check, Write write) {
    if (verdicts_[check] == Verdict::None) return;
    line({">>" + std::string(common::namesOf(check).title),
          std::string(common::verdictWord(verdicts_[check]))});
    write();
    text_ += ">>END_MODULE\n";
  }
  // Between tabs.
  void line(const std::vector<std::string>& fields) {
    for (const std::string& field : fields) {
      text_ += field;
      text_ += '\t';
    }
    text_.back() = '\n';
  }
  std::string take() { return std::move(text_); }

 private:
  const Verdicts& verdicts_;
  std::string text_ = "##FastQC\t0.12.1\n";
};

void writeBasics(FastqcText& out, const SampleResult& result, std::string_view fileName) {
  const LengthSummary& lengths = result.lengths;
  out.line({"#Measure", "Value"});
  out.line({"Filename", withoutLineEnds(fileName)});
  out.line({"File type", "Conventional base calls"});
  out.line({"Encoding", result.phredOffset == 33 ? "Sanger / Illumina 1.9" : "Illumina 1.5"});
  out.line({"Total Sequences", std::to_string(lengths.reads)});
  out.line({"Total Bases", basesText(lengths.bases)});
  out.line({"Sequences flagged as poor quality", "0"});
  out.line({"Sequence length", rangeText(lengths.shortest, lengths.longest)});
  out.line({"%GC", common::fixedText(std::floor(result.gcPercent.value_or(0)), 0)});
}

void writeQualities(FastqcText& out, const SampleResult& result) {
  out.line(
      {"#Base", "Mean", "Median", "Lower Quartile", "Upper Quartile", "10th Percentile", "90th Percentile"});
  for (const GroupProfile& group : result.profile) {
    const QualityQuantiles phred =
        group.quantiles.value_or(QualityQuantiles{kNone, kNone, kNone, kNone, kNone});
    out.line({rangeText(group.positions), decimalText(group.meanPhred), decimalText(phred.median),
              decimalText(phred.lowerQuartile), decimalText(phred.upperQuartile), decimalText(phred.tenth),
              decimalText(phred.ninetieth)});
  }
}

void writeTileQualities(FastqcText& out, const TileQuality& quality) {
  out.line({"#Tile", "Base", "Mean"});
  for (const TileDeviations& tile : quality.tiles) {
    for (std::size_t i = 0; i < quality.groups.size(); ++i) {
      out.line({std::to_string(tile.tile), rangeText(quality.groups[i]), decimalText(tile.phred[i])});
    }
  }
}

void writeReadQualities(FastqcText& out, const SampleResult& result) {
  out.line({"#Quality", "Count"});
  const auto& reads = result.readsByMeanQuality;
  std::size_t first = 0;
  std::size_t end = reads.size();
  while (first < end && reads[first] == 0)
    ++first;
  while (end > first && reads[end - 1] == 0)
    --end;
  for (std::size_t code = first; code < end; ++code) {
    out.line({std::to_string(static_cast<int>(code) - result.phredOffset),
              decimalText(static_cast<double>(reads[code]))});
  }
}

void writeContent(FastqcText& out, const SampleResult& result) {
  out.line({"#Base", "G", "A", "T", "C"});
  for (const GroupProfile& group : result.profile) {
    const auto& [a, c, g, t] = group.bases.value_or(std::array{kNone, kNone, kNone, kNone});
    out.line({rangeText(group.positions), decimalText(g), decimalText(a), decimalText(t), decimalText(c)});
  }
}

void writeGcReads(FastqcText& out, const SampleResult& result) {
  out.line({"#GC Content", "Count"});
  const GcDistribution reads = result.gc ? result.gc->observed : GcDistribution{};
  for (std::size_t percent = 0; percent < reads.size(); ++percent) {
    out.line({std::to_string(percent), decimalText(reads[percent])});
  }
}

void writeUnknownBases(FastqcText& out, const SampleResult& result) {
  out.line({"#Base", "N-Count"});
  for (const GroupProfile& group : result.profile) {
    out.line({rangeText(group.positions), decimalText(group.nPercent)});
  }
}

void writeLengths(FastqcText& out, const SampleResult& result) {
  out.line({"#Length", "Count"});
  for (const LengthBin& bin : result.lengthBins) {
    out.line({rangeText(bin.shortest, bin.longest), decimalText(static_cast<double>(bin.reads))});
  }
}

// "9", ">10", ">1k", ">10k+"
std::string levelText(const DuplicationLevel& level, bool isLast) {
  if (level.from < 10) return std::to_string(level.from);
  const std::uint64_t above = level.from / 10 * 10;
  const std::string number = above < 1000 ? std::to_string(above) : std::to_string(above / 1000) + "k";
  return ">" + number + (isLast ? "+" : "");
}

void writeDuplication(FastqcText& out, const DuplicationSummary& duplication) {
  out.line({"#Total Deduplicated Percentage", decimalText(duplication.deduplicatedPercent)});
  out.line({"#Duplication Level", "Percentage of total"});
  for (const DuplicationLevel& level : duplication.levels) {
    out.line({levelText(level, &level == &duplication.levels.back()), decimalText(level.readsPercent)});
  }
}

void writeOverrepresented(FastqcText& out, const SampleResult& result) {
  if (result.overrepresented.empty()) return;
  out.line({"#Sequence", "Count", "Percentage", "Possible Source"});
  for (const OverrepresentedSequence& one : result.overrepresented) {
    out.line({sequenceText(one.sequence), std::to_string(one.reads), decimalText(one.percent),
              one.origin.empty() ? "No Hit" : one.origin});
  }
}

// Under the headings that FastQC has for the same adapters.
std::string adapterHeading(std::string name) {
  struct Heading {
    std::string_view name;
    const char* heading;
  };
  constexpr std::array kHeadings = {
      Heading{"Illumina universal adapter", "Illumina Universal Adapter"},
      Heading{"Illumina small RNA 3' adapter", "Illumina Small RNA 3' Adapter"},
      Heading{"Illumina small RNA 5' adapter", "Illumina Small RNA 5' Adapter"},
      Heading{"Nextera transposase sequence", "Nextera Transposase Sequence"},
      Heading{"poly-A", "PolyA"},
      Heading{"poly-G", "PolyG"},
  };
  const auto found =
      std::find_if(kHeadings.begin(), kHeadings.end(), [&](const Heading& one) { return one.name == name; });
  return found == kHeadings.end() ? std::move(name) : found->heading;
}

void writeAdapterCurves(FastqcText& out, const AdapterContent& adapters) {
  if (adapters.curves.empty()) return;
  std::vector<std::string> fields = {"#Position"};
  for (const AdapterCurve& curve : adapters.curves) {
    fields.push_back(adapterHeading(curve.name));
  }
  out.line(fields);
  for (std::size_t i = 0; i < adapters.groups.size(); ++i) {
    fields = {rangeText(adapters.groups[i])};
    for (const AdapterCurve& curve : adapters.curves) {
      fields.push_back(decimalText(curve.percent[i]));
    }
    out.line(fields);
  }
}

}  // namespace

std::string fastqcData(const SampleResult& result, std::string_view fileName) {
  FastqcText out(result.verdicts);
  out.module(Check::BasicStatistics, [&] { writeBasics(out, result, fileName); });
  out.module(Check::PerBaseSequenceQuality, [&] { writeQualities(out, result); });
  out.module(Check::PerTileSequenceQuality, [&] { writeTileQualities(out, result.tiles); });
  out.module(Check::PerSequenceQualityScores, [&] { writeReadQualities(out, result); });
  out.module(Check::PerBaseSequenceContent, [&] { writeContent(out, result); });
  out.module(Check::PerSequenceGcContent, [&] { writeGcReads(out, result); });
  out.module(Check::PerBaseNContent, [&] { writeUnknownBases(out, result); });
  out.module(Check::SequenceLengthDistribution, [&] { writeLengths(out, result); });
  out.module(Check::SequenceDuplicationLevels, [&] { writeDuplication(out, result.duplication); });
  out.module(Check::OverrepresentedSequences, [&] { writeOverrepresented(out, result); });
  out.module(Check::AdapterContent, [&] { writeAdapterCurves(out, result.adapters); });
  return out.take();
}

}  // namespace genostat::analysis
