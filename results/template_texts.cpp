// The texts of the templates. Indentation and trailing blanks belong to them: clients show the
// generated syntax as it is.
#include <initializer_list>
#include <string>
#include <string_view>

#include "results/syntax_templates.h"

namespace genostat {

namespace {

// Joins lines with line feeds; all but the first are indented.
std::string lines(std::size_t indent, std::initializer_list<std::string_view> texts) {
  std::string joined;
  for (const std::string_view text : texts) {
    if (!joined.empty()) joined.append("\n").append(indent, ' ');
    joined.append(text);
  }
  return joined;
}

// The columns of the result file, in their order.
constexpr std::string_view kResultColumns[] = {"Sample",
                                               "Adapter_Type",
                                               "Total_Sequences",
                                               "Total_Bases",
                                               "Sequence_length",
                                               "GC",
                                               "total_deduplicated_percentage",
                                               "avg_sequence_length",
                                               "median_sequence_length",
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
                                               "qc_score",
                                               "median_phred_first_10bp",
                                               "median_phred_last_10bp",
                                               "mean_phred_all_reads",
                                               "low_complexity_percentage",
                                               "unexpected_bases_percentage",
                                               "overrepresented_seq_count"};

std::string importTemplate() {
  std::string text;
  const auto line = [&text](std::string_view content) {
    text.append("\n");
    if (!content.empty()) text.append(16, ' ').append(content);
  };
  for (const std::string_view content :
       {"PRESERVE.", "SET DECIMAL DOT.", "", "GET DATA  /TYPE=TXT", "/FILE=\"{{CSVPATH}}\"",
        "/ENCODING='UTF8'", "/DELIMITERS=\",\"", "/QUALIFIER='\"'", "/ARRANGEMENT=DELIMITED", "/FIRSTCASE=2",
        "/DATATYPEMIN PERCENTAGE=95.0", "/VARIABLES="}) {
    line(content);
  }
  for (const std::string_view column : kResultColumns) {
    line(std::string(column) + " AUTO");
  }
  for (const std::string_view content : {"/MAP.", "RESTORE.", "CACHE.", "EXECUTE.",
                                         "DATASET NAME {{JOBNAME}}.", "DATASET ACTIVATE {{JOBNAME}}."}) {
    line(content);
  }
  return text;
}

}  // namespace

TemplateTable buildTemplateTable() {
  return {{"GENOSTAT_OUTPUT",
           lines(40, {"GENOSTAT", "/JOB FILE='' NAME='{{JOB_NAME}}' ADAPTERS=NONE",
                      "/PRINT SAMPLE_COUNT={{SC}} VARIABLE_COUNT={{VC}} MESSAGE={{MSG_ID}}."})},
          {"GENOSTAT_DELETE", lines(40, {"GENOSTAT", "/JOB FILE='' NAME='{{JOB_NAME}}' ADAPTERS=NONE",
                                         "/DELETE FILE='{{FILE_NAME}}'."})},
          {"IMPORT_CSV", importTemplate()},
          {"DESCRIPTIVES", lines(20, {"DESCRIPTIVES VARIABLES={{VARLIST}} ",
                                      "/STATISTICS=MEAN STDDEV MIN MAX {{SKEWNESS}} {{KURTOSIS}}."})},
          {"FREQUENCY", lines(44, {"FREQUENCIES VARIABLES={{VARLIST}}", "{{NTILES}}", "{{PCENTILES}}",
                                   "/STATISTICS=STDDEV VARIANCE RANGE MINIMUM MAXIMUM SEMEAN CV",
                                   "{{HISTOGRAM}}", "/ORDER=ANALYSIS."})},
          {"CORRELATION_PEARSON",
           lines(44, {"CORRELATIONS", "/VARIABLES={{VARLIST}}", "/PRINT={{ONETILE}} {{TWOTILE}} NOSIG FULL",
                      "/STATISTICS XPROD", "/MISSING=PAIRWISE."})},
          {"CORRELATION_SP_KEN",
           lines(52, {"NONPAR CORR", "/VARIABLES={{VARLIST}}",
                      "/PRINT={{COEFF}} {{ONETILE}} {{TWOTILE}} NOSIG FULL", "/MISSING=PAIRWISE."})},
          {"REGRESSION", lines(36, {"REGRESSION", "/MISSING LISTWISE",
                                    "/STATISTICS COEFF OUTS {{CI}} R ANOVA COLLIN TOL CHANGE",
                                    "/CRITERIA=PIN(.05) POUT(.10) TOLERANCE(.0001)", "/NOORIGIN",
                                    "/DEPENDENT {{DEP_VARLIST}}", "/METHOD={{METHOD}} {{IN_VARLIST}}",
                                    "/RESIDUALS PRESS {{NORMPROB}}."})}};
}

}  // namespace genostat
