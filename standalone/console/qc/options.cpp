#include <fmt/format.h>

#include <CLI/CLI.hpp>

#include <array>
#include <charconv>
#include <cstddef>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "common/quality/checks.h"
#include "standalone/console/session_options.h"
#include "standalone/language/translation.h"
#include "standalone/syntax/diagnostic.h"

namespace genostat::standalone {

namespace {

constexpr std::array<std::string_view, 4> kMethods = {"enter", "stepwise", "backward", "forward"};

// Not CLI11's, whose text is for programmers.
CLI::Validator numberBetween(double least, double most, const std::string& what) {
  return CLI::Validator(
      [=](std::string& value) {
        double number = 0;
        const char* end = value.data() + value.size();
        const auto result = std::from_chars(value.data(), end, number);
        if (result.ec == std::errc() && result.ptr == end && number >= least && number <= most)
          return std::string();
        return translated("expected {1}, found {2}", {what, quoteForMessage(value)});
      },
      "");
}

// "5, 95" is as good as "5,95".
std::string withoutBlanks(std::string value) {
  std::erase(value, ' ');
  return value;
}

// The columns of the result, by what they hold.
std::string columnHelp() {
  const std::pair<const char*, common::ResultColumn::Kind> kinds[] = {
      {marked("Columns with numbers: {1}"), common::ResultColumn::Kind::Number},
      {marked("with verdicts: {1}"), common::ResultColumn::Kind::Verdict},
      {marked("with texts: {1}"), common::ResultColumn::Kind::Text}};
  std::string text;
  for (const auto& [label, kind] : kinds) {
    std::vector<std::string_view> names;
    for (const common::ResultColumn& column : common::kResultColumns) {
      if (column.kind == kind) names.push_back(column.name);
    }
    text += (text.empty() ? "" : "; ") + translated(label, {fmt::to_string(fmt::join(names, ", "))});
  }
  return text + '.';
}

void addAnalyses(const common::Command& qc, QcOptions& options) {
  const auto flag = [&qc](const char* name, bool& value, const std::string& description,
                          CLI::Option* analysis) {
    qc.app().add_flag(name, value, description)->needs(analysis);
  };
  // Several of them are one list.
  const auto list = [&qc](const char* name, std::string& value, const std::string& description) {
    return qc.addText(name, value, "VARS", description)->join(' ');
  };
  CLI::Option* descriptives =
      list("--descriptives", options.descriptives, translated("means, deviations and ranges"));
  flag("--skewness", options.skewness, translated("skewness as well"), descriptives);
  flag("--kurtosis", options.kurtosis, translated("kurtosis as well"), descriptives);
  CLI::Option* frequencies =
      list("--frequencies", options.frequencies, translated("tables of values and their counts"));
  qc.addCount("--ntiles", 2, 1000, translated("cut points of this many equal groups"),
              [&options](int groups) { options.tiles = groups; })
      ->needs(frequencies);
  qc.app()
      .add_option("--percentiles", options.percentiles, translated("percentiles such as 5,95.5"))
      ->type_name("LIST")
      ->delimiter(',')
      ->expected(1)
      ->take_all()
      ->transform(withoutBlanks)
      ->check(numberBetween(0.0, 100.0, translated("numbers from 0 to 100")))
      ->needs(frequencies);
  flag("--quartiles", options.quartiles, translated("quartiles"), frequencies);
  flag("--histogram", options.histogram, translated("histograms with the normal curve, in HTML"),
       frequencies);
  CLI::Option* correlations =
      list("--correlations", options.correlations, translated("coefficients of all pairs"));
  flag("--no-pearson", options.noPearson, translated("without Pearson's coefficients"), correlations);
  flag("--spearman", options.spearman, translated("Spearman's rho"), correlations);
  flag("--kendall", options.kendall, translated("Kendall's tau-b"), correlations);
  flag("--one-tailed", options.oneTailed, translated("one-tailed significance"), correlations);
  CLI::Option* regression = qc.addText("--regression", options.regression, "FORMULA",
                                       translated("linear regression; FORMULA is 'Y ~ A + B'"));
  qc.addChoice("--method", kMethods, translated("how predictors come in; default: enter"),
               [&options](std::size_t index) { options.method = kMethods[index]; })
      ->needs(regression);
  qc.app()
      .add_option("--ci", options.confidence, translated("confidence intervals of this level in percent"))
      ->type_name("LEVEL")
      ->take_last()
      ->check(numberBetween(0.1, 99.999, translated("a level from 0.1 to 99.999 percent")))
      ->needs(regression);
  flag("--normal-plot", options.normalPlot, translated("normal P-P plot of the residuals, in HTML"),
       regression);
}

}  // namespace

common::CommandHelp qcHelp() {
  return {
      {translated(
           "Writes the GENOSTAT command for these files and runs it as \"genostat run\" would. What is "
           "shown is a table of the samples with a mark for each check, the checks that failed, and "
           "the analyses that are asked for."),
       translated(
           "A sample that fails its checks is a result: the program succeeds. With a sample that could "
           "not be read it ends with status 1, after the results of the others."),
       translated(
           "VARS are columns of the result, with blanks or commas between them; ALL stands for all that "
           "the analysis can use. Each analysis can be asked for once; its switches need it."),
       columnHelp()},
      {examples({"genostat qc reads_R1.fastq.gz reads_R2.fastq.gz",
                 "genostat qc run1/ --adapter illumina --html report.html --csv run1.csv",
                 "genostat qc run1/ --descriptives GC,qc_score --frequencies adapter_content",
                 "genostat qc run1/ --regression 'qc_score ~ GC + mean_phred_all_reads' --method stepwise",
                 "genostat qc run1/ --correlations ALL --spearman --print-syntax > run1.syntax"}),
       exitStatusHelp()},
      {}};
}

void addQcOptions(const common::Command& qc, QcOptions& options) {
  qc.addFiles(options.inputs, translated("FASTQ files, plain or compressed, and folders of them"));
  qc.addText("--adapter", options.adapter, "none|illumina|nextera|SEQUENCE",
             translated("the adapter to look for; default: none, which looks for the common ones"));
  qc.addText("--name", options.name, "NAME", translated("the job's name; default: a free one"));
  qc.app().add_flag("--no-keep-going", options.stopAtUnread,
                    translated("end the job at the first sample that cannot be read; by default the others "
                               "are measured"));
  addAnalyses(qc, options);
  CLI::Option* csv = qc.addText("--csv", options.csvFile, "FILE", translated("keep the result file"));
  qc.app()
      .add_flag("--safe-csv", options.safeCsv,
                translated("an apostrophe before each text in it that a spreadsheet would compute"))
      ->needs(csv);
  qc.addText("--fastqc-data", options.fastqcFolder, "DIR",
             translated("write FastQC's data files for report programs into this folder"));
  qc.app().add_flag("--print-syntax", options.printSyntax,
                    translated("show the command instead of running it"));
  addSessionOptions(qc, options.session);
}

}  // namespace genostat::standalone
