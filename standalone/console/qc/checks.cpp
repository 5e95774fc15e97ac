#include "standalone/console/qc/checks.h"

#include <array>

#include "standalone/language/translation.h"

namespace genostat::standalone {

namespace {

using Kind = ResultColumn::Kind;

constexpr std::array<ResultColumn, 27> kColumns = {{
    {"Sample", Kind::Text},
    {"Adapter_Type", Kind::Text},
    {"Total_Sequences", Kind::Number},
    {"Total_Bases", Kind::Number},
    {"Sequence_length", Kind::Text},
    {"GC", Kind::Number},
    {"total_deduplicated_percentage", Kind::Number},
    {"avg_sequence_length", Kind::Number},
    {"median_sequence_length", Kind::Number},
    {"basic_statistics", Kind::Verdict},
    {"per_base_sequence_quality", Kind::Verdict},
    {"per_sequence_quality_scores", Kind::Verdict},
    {"per_base_sequence_content", Kind::Verdict},
    {"per_sequence_gc_content", Kind::Verdict},
    {"per_base_n_content", Kind::Verdict},
    {"sequence_length_distribution", Kind::Verdict},
    {"sequence_duplication_levels", Kind::Verdict},
    {"overrepresented_sequences", Kind::Verdict},
    {"adapter_content", Kind::Verdict},
    {"per_tile_sequence_quality", Kind::Verdict},
    {"qc_score", Kind::Number},
    {"median_phred_first_10bp", Kind::Number},
    {"median_phred_last_10bp", Kind::Number},
    {"mean_phred_all_reads", Kind::Number},
    {"low_complexity_percentage", Kind::Number},
    {"unexpected_bases_percentage", Kind::Number},
    {"overrepresented_seq_count", Kind::Number},
}};

constexpr std::array<QcCheck, kCheckCount> kChecks = {{
    {"per_base_sequence_quality", 'Q', marked("base quality"),
     marked("At some positions many bases are unreliable."),
     marked("If it is the end of the reads, trim them by quality; if it is one place in the middle, ask the "
            "sequencing lab about that cycle.")},
    {"per_sequence_quality_scores", 'R', marked("read quality"),
     marked("The typical read is poor as a whole."),
     marked("Filter reads by their mean quality, and sequence again if too few are left.")},
    {"per_base_sequence_content", 'C', marked("base content"),
     marked("The four bases do not keep their shares along the reads."),
     marked("Random primers, transposases and barcodes do this to the first bases and it may stay; at the "
            "end of the reads it points to adapters, to be trimmed.")},
    {"per_sequence_gc_content", 'G', marked("GC per read"),
     marked("The reads seem to come from more than one source."),
     marked("Map some of them to the genomes that may have got in; in amplicons and metagenomes it is "
            "expected.")},
    {"per_base_n_content", 'N', marked("unknown bases"),
     marked("At some positions the sequencer could not name the base."),
     marked("Trim or drop these positions; with good qualities around them, ask about the run.")},
    {"sequence_length_distribution", 'L', marked("read lengths"), marked("There are reads without any base."),
     marked("Trim again with a least length, for the pair together, before other programs refuse the file.")},
    {"sequence_duplication_levels", 'D', marked("duplication"),
     marked("More than half of the reads are copies of others."),
     marked("For genomes mark duplicates after mapping and use more material or fewer cycles next time; in "
            "RNA and amplicons it is expected.")},
    {"overrepresented_sequences", 'O', marked("frequent sequences"),
     marked("One sequence makes up more than 1 % of the reads."),
     marked("Look it up in the JSON report of genostat-analysis: adapters are trimmed, contaminants filtered "
            "out, and in amplicons and small RNA it is expected.")},
    {"adapter_content", 'A', marked("adapters"),
     marked("Many fragments are shorter than the reads, which run into the adapter."),
     marked("Trim the adapter before mapping, then check again.")},
    {"per_tile_sequence_quality", 'T', marked("flow cell tiles"),
     marked("A part of the flow cell is worse than the rest."),
     marked("Leave out the reads of a single bad tile; report many of them to the sequencing lab; in files "
            "of a few thousand reads it is chance.")},
}};

}  // namespace

std::span<const ResultColumn> resultColumns() {
  return kColumns;
}

std::span<const QcCheck, kCheckCount> qcChecks() {
  return kChecks;
}

}  // namespace genostat::standalone
