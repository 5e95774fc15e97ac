#include "results/post_job_syntax.h"

#include <algorithm>
#include <vector>

#include "results/number_text.h"
#include "results/syntax_templates.h"

namespace genostat {

namespace {

constexpr int kPercentileDecimals = 2;

// Dataset names hold no blanks.
std::string datasetName(const GenoJobSettings& settings) {
  std::string name = settings.jobName();
  std::replace(name.begin(), name.end(), ' ', '_');
  return name;
}

std::string joinWithBlanks(const std::vector<std::string>& words) {
  std::string joined;
  for (const std::string& word : words) {
    if (&word != &words.front()) joined += ' ';
    joined += word;
  }
  return joined;
}

std::string when(bool condition, const char* keyword) {
  return condition ? keyword : "";
}

std::string outputBlock(const TemplateTable& table, const GenoJobSettings& settings) {
  return fillTemplate(table, "GENOSTAT_OUTPUT",
                      {{"JOB_NAME", datasetName(settings)},
                       {"SC", std::to_string(settings.sampleCount())},
                       {"VC", std::to_string(settings.variableCount())},
                       {"MSG_ID", std::to_string(settings.messageCode())}});
}

std::string importBlock(const TemplateTable& table, const GenoJobSettings& settings) {
  return fillTemplate(table, "IMPORT_CSV",
                      {{"CSVPATH", settings.csvFilePath()}, {"JOBNAME", datasetName(settings)}});
}

std::string deleteBlock(const TemplateTable& table, const GenoJobSettings& settings) {
  return fillTemplate(table, "GENOSTAT_DELETE",
                      {{"JOB_NAME", datasetName(settings)}, {"FILE_NAME", settings.csvFilePath()}});
}

std::string descriptivesBlock(const TemplateTable& table, const DescriptivesOptions& options) {
  return fillTemplate(table, "DESCRIPTIVES",
                      {{"VARLIST", joinWithBlanks(options.variables)},
                       {"SKEWNESS", when(options.skewness, "SKEWNESS")},
                       {"KURTOSIS", when(options.kurtosis, "KURTOSIS")}});
}

std::string frequenciesBlock(const TemplateTable& table, const FrequenciesOptions& options) {
  std::string ntiles = when(options.quartiles, "\n/NTILES=4");
  if (options.ntiles > 0) ntiles += "\n/NTILES=" + std::to_string(options.ntiles);
  std::vector<std::string> percentiles;
  for (const double percentile : options.percentiles) {
    percentiles.push_back(fixedText(percentile, kPercentileDecimals));
  }
  return fillTemplate(
      table, "FREQUENCY",
      {{"VARLIST", joinWithBlanks(options.variables)},
       {"NTILES", ntiles},
       {"PCENTILES", percentiles.empty() ? "" : "/PERCENTILES=" + joinWithBlanks(percentiles)},
       {"HISTOGRAM", when(options.histogram, "\n/HISTOGRAM NORMAL")}});
}

std::string correlationsBlock(const TemplateTable& table, const CorrelationsOptions& options) {
  std::string coefficients;
  if (options.spearman && options.kendall) {
    coefficients = "BOTH";
  } else {
    coefficients = when(options.spearman, "SPEARMAN") + when(options.kendall, "KENDALL");
  }
  const ValueMap values = {{"VARLIST", joinWithBlanks(options.variables)},
                           {"ONETILE", when(options.oneTail, "ONETAIL")},
                           {"TWOTILE", when(options.twoTail, "TWOTAIL")},
                           {"COEFF", coefficients}};
  std::string block;
  if (options.pearson) block = fillTemplate(table, "CORRELATION_PEARSON", values);
  if (!coefficients.empty()) block.append("\n").append(fillTemplate(table, "CORRELATION_SP_KEN", values));
  return block;
}

std::string regressionBlock(const TemplateTable& table, const RegressionOptions& options) {
  const std::string& level = options.confidenceInterval;
  return fillTemplate(table, "REGRESSION",
                      {{"IN_VARLIST", joinWithBlanks(options.independent)},
                       {"DEP_VARLIST", options.dependent},
                       {"CI", level.empty() ? "" : "CI(" + level + ")"},
                       {"METHOD", regressionKeyword(options.method)},
                       {"NORMPROB", when(options.normalProbabilityPlot, "NORMPROB(ZRESID)")}});
}

}  // namespace

std::string postJobSyntax(const GenoJobSettings& settings, bool failed) {
  const TemplateTable table = buildTemplateTable();
  std::string syntax = outputBlock(table, settings) + "\n";
  if (failed) return syntax;
  syntax += importBlock(table, settings);
  if (settings.descriptives()) syntax += "\n" + descriptivesBlock(table, *settings.descriptives());
  if (settings.frequencies()) syntax += "\n" + frequenciesBlock(table, *settings.frequencies());
  if (settings.correlations()) syntax += "\n" + correlationsBlock(table, *settings.correlations());
  if (settings.regression()) syntax += "\n" + regressionBlock(table, *settings.regression());
  return syntax + "\n" + deleteBlock(table, settings);
}

}  // namespace genostat
