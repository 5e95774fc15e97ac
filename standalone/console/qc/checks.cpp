#include "standalone/console/qc/checks.h"

#include <array>

#include "standalone/language/translation.h"

namespace genostat::standalone {

namespace {

constexpr std::array<QcCheck, kCheckCount> kQcChecks = {{
    {common::Check::PerBaseSequenceQuality, marked("At some positions many bases are unreliable."),
     marked("If it is the end of the reads, trim them by quality; if it is one place in the middle, ask the "
            "sequencing lab about that cycle.")},
    {common::Check::PerSequenceQualityScores, marked("The typical read is poor as a whole."),
     marked("Filter reads by their mean quality, and sequence again if too few are left.")},
    {common::Check::PerBaseSequenceContent,
     marked("The four bases do not keep their shares along the reads."),
     marked("Random primers, transposases and barcodes do this to the first bases and it may stay; at the "
            "end of the reads it points to adapters, to be trimmed.")},
    {common::Check::PerSequenceGcContent, marked("The reads seem to come from more than one source."),
     marked("Map some of them to the genomes that may have got in; in amplicons and metagenomes it is "
            "expected.")},
    {common::Check::PerBaseNContent, marked("At some positions the sequencer could not name the base."),
     marked("Trim or drop these positions; with good qualities around them, ask about the run.")},
    {common::Check::SequenceLengthDistribution, marked("There are reads without any base."),
     marked("Trim again with a least length, for the pair together, before other programs refuse the file.")},
    {common::Check::SequenceDuplicationLevels, marked("More than half of the reads are copies of others."),
     marked("For genomes mark duplicates after mapping and use more material or fewer cycles next time; in "
            "RNA and amplicons it is expected.")},
    {common::Check::OverrepresentedSequences, marked("One sequence makes up more than 1 % of the reads."),
     marked("Look it up in the JSON report of genostat-analysis: adapters are trimmed, contaminants filtered "
            "out, and in amplicons and small RNA it is expected.")},
    {common::Check::AdapterContent,
     marked("Many fragments are shorter than the reads, which run into the adapter."),
     marked("Trim the adapter before mapping, then check again.")},
    {common::Check::PerTileSequenceQuality, marked("A part of the flow cell is worse than the rest."),
     marked("Leave out the reads of a single bad tile; report many of them to the sequencing lab; in files "
            "of a few thousand reads it is chance.")},
}};

}  // namespace

std::span<const QcCheck, kCheckCount> qcChecks() {
  return kQcChecks;
}

}  // namespace genostat::standalone
