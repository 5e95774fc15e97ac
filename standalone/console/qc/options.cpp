#include <CLI/CLI.hpp>

#include <array>
#include <charconv>
#include <string>
#include <string_view>

#include "common/quality/checks.h"
#include "common/text/ascii.h"
#include "common/text/wrapped_text.h"
#include "standalone/console/session_options.h"
#include "standalone/language/translation.h"
#include "standalone/syntax/diagnostic.h"

namespace genostat::standalone {

namespace {

constexpr const char* kQcHelp = marked(
    "Writes the GENOSTAT command for these files and runs it as \"genostat run\" would. What is\n"
    "shown is a table of the samples with a mark for each check, the checks that failed, and\n"
    "the analyses that are asked for.\n"
    "\n"
    "A sample that fails its checks is a result: the program succeeds.\n"
    "\n"
    "VARS are columns of the result, with blanks or commas between them; ALL stands for all that\n"
    "the analysis can use. Each analysis can be asked for once; its switches need it.\n"
    "\n");

constexpr const char* kQcExamples =
    "  genostat qc reads_R1.fastq.gz reads_R2.fastq.gz\n"
    "  genostat qc run1/ --adapter illumina --html report.html --csv run1.csv\n"
    "  genostat qc run1/ --descriptives GC,qc_score --frequencies adapter_content\n"
    "  genostat qc run1/ --regression 'qc_score ~ GC + mean_phred_all_reads' --method stepwise\n"
    "  genostat qc run1/ --correlations ALL --spearman --print-syntax > run1.syntax\n"
    "\n";

constexpr int kHelpWidth = 90;

constexpr std::array<std::string_view, 4> kMethods = {"enter", "stepwise", "backward", "forward"};

const CLI::Validator& methodName() {
  static const CLI::Validator validator(
      [](std::string& value) {
        for (const std::string_view method : kMethods) {
          if (common::equalsIgnoreCase(value, method)) return std::string();
        }
        return describeChoice(translated("enter, stepwise, backward or forward"), value, kMethods);
      },
      "", "the name of a method");
  return validator;
}

// Not CLI11's, whose text is for programmers.
template <typename Number>
CLI::Validator numberBetween(Number least, Number most, const std::string& what) {
  return CLI::Validator(
      [=](std::string& value) {
        Number number = 0;
        const char* end = value.data() + value.size();
        const auto result = std::from_chars(value.data(), end, number);
        if (result.ec == std::errc() && result.ptr == end && number >= least && number <= most)
          return std::string();
        return translated("expected {1}, found {2}", {what, quoteForMessage(value)});
      },
      "");
}

// "5, 95" is as good as "5,95".
const CLI::Validator& withoutBlanks() {
  static const CLI::Validator validator(
      [](std::string& value) {
        std::erase(value, ' ');
        return std::string();
      },
      "");
  return validator;
}

// The columns of the result in lines for the help.
std::string columnHelp() {
  const std::pair<const char*, common::ResultColumn::Kind> kinds[] = {
      {marked("Columns with numbers: {1}"), common::ResultColumn::Kind::Number},
      {marked("with verdicts: {1}"), common::ResultColumn::Kind::Verdict},
      {marked("with texts: {1}"), common::ResultColumn::Kind::Text}};
  std::string text;
  for (const auto& [label, kind] : kinds) {
    std::string names;
    for (const common::ResultColumn& column : common::kResultColumns) {
      if (column.kind == kind) names += (names.empty() ? "" : ", ") + std::string(column.name);
    }
    text += (text.empty() ? "" : "; ") + translated(label, {names});
  }
  std::string lines;
  for (const std::string& line : common::wrapText(text + '.', kHelpWidth)) {
    lines += line + '\n';
  }
  return lines + '\n';
}

// Several of them are one list.
CLI::Option* addList(CLI::App& qc, const char* name, std::string& value, const char* type,
                     const std::string& description) {
  return addTextOption(qc, name, value, type, description)->join(' ');
}

void addAnalyses(CLI::App& qc, QcOptions& options) {
  const auto flag = [&qc](const char* name, bool& value, const std::string& description,
                          CLI::Option* analysis) { qc.add_flag(name, value, description)->needs(analysis); };
  CLI::Option* descriptives =
      addList(qc, "--descriptives", options.descriptives, "VARS", translated("means, deviations and ranges"));
  flag("--skewness", options.skewness, translated("skewness as well"), descriptives);
  flag("--kurtosis", options.kurtosis, translated("kurtosis as well"), descriptives);
  CLI::Option* frequencies = addList(qc, "--frequencies", options.frequencies, "VARS",
                                     translated("tables of values and their counts"));
  qc.add_option("--ntiles", options.tiles, translated("cut points of this many equal groups"))
      ->type_name("N")
      ->take_last()
      ->check(numberBetween(2, 1000, translated("a whole number from 2 to 1000")))
      ->needs(frequencies);
  qc.add_option("--percentiles", options.percentiles, translated("percentiles such as 5,95.5"))
      ->type_name("LIST")
      ->delimiter(',')
      ->expected(1)
      ->take_all()
      ->transform(withoutBlanks())
      ->check(numberBetween(0.0, 100.0, translated("numbers from 0 to 100")))
      ->needs(frequencies);
  flag("--quartiles", options.quartiles, translated("quartiles"), frequencies);
  flag("--histogram", options.histogram, translated("histograms with the normal curve, in HTML"),
       frequencies);
  CLI::Option* correlations =
      addList(qc, "--correlations", options.correlations, "VARS", translated("coefficients of all pairs"));
  flag("--no-pearson", options.noPearson, translated("without Pearson's coefficients"), correlations);
  flag("--spearman", options.spearman, translated("Spearman's rho"), correlations);
  flag("--kendall", options.kendall, translated("Kendall's tau-b"), correlations);
  flag("--one-tailed", options.oneTailed, translated("one-tailed significance"), correlations);
  CLI::Option* regression = addTextOption(qc, "--regression", options.regression, "FORMULA",
                                          translated("linear regression; FORMULA is 'Y ~ A + B'"));
  addTextOption(qc, "--method", options.method, "enter|stepwise|backward|forward",
                translated("how predictors come in; default: enter"))
      ->check(methodName())
      ->needs(regression);
  qc.add_option("--ci", options.confidence, translated("confidence intervals of this level in percent"))
      ->type_name("LEVEL")
      ->take_last()
      ->check(numberBetween(0.1, 99.999, translated("a level from 0.1 to 99.999 percent")))
      ->needs(regression);
  flag("--normal-plot", options.normalPlot, translated("normal P-P plot of the residuals, in HTML"),
       regression);
}

}  // namespace

void addQcOptions(CLI::App& qc, QcOptions& options) {
  qc.add_option("FILE", options.inputs, translated("FASTQ files, plain or compressed, and folders of them"))
      ->type_name("")
      ->required()
      ->check(notEmpty());
  addTextOption(qc, "--adapter", options.adapter, "none|illumina|nextera|SEQUENCE",
                translated("the adapter to look for; default: none, which looks for the common ones"));
  addTextOption(qc, "--name", options.name, "NAME", translated("the job's name; default: a free one"));
  addAnalyses(qc, options);
  addTextOption(qc, "--csv", options.csvFile, "FILE", translated("keep the result file"));
  addTextOption(qc, "--fastqc-data", options.fastqcFolder, "DIR",
                translated("write FastQC's data files for report programs into this folder"));
  qc.add_flag("--print-syntax", options.printSyntax, translated("show the command instead of running it"));
  addSessionOptions(qc, options.session);
  qc.footer(translated(kQcHelp) + columnHelp() + examplesHelp(kQcExamples) + translated(kExitStatusHelp));
}

}  // namespace genostat::standalone
