#include "standalone/console/shell/help.h"

#include <algorithm>
#include <array>

#include "common/text/ascii.h"
#include "common/text/utf8.h"
#include "standalone/language/translation.h"
#include "standalone/syntax/keyword.h"

namespace genostat::standalone {

namespace {

// Translated where it is shown: this keeps it recognisable as a text that people read.
struct Topic {
  std::string_view name;
  std::string (*summary)();
  std::string (*details)();  // may be null
  std::string_view usage;
  std::string_view example;
};

constexpr std::array kTopics = {
    Topic{"jobs", [] { return translated("show the jobs that run or wait"); }, nullptr, "jobs", "jobs"},
    Topic{"cancel", [] { return translated("cancel a job, or all that run or wait"); }, nullptr,
          "cancel NAME | cancel all", "cancel run_1"},
    Topic{"wait", [] { return translated("wait until all jobs have ended"); },
          [] { return translated("Shows their progress. Ctrl-C stops waiting; the jobs go on."); }, "wait",
          "wait"},
    Topic{"datasets", [] { return translated("show the open datasets"); },
          [] { return translated("A star marks the active one."); }, "datasets", "datasets"},
    Topic{"show", [] { return translated("show the first cases of a dataset or a variable"); },
          [] {
            return translated(
                "NAME is a dataset or a variable of the active dataset; without it, the active dataset is "
                "shown. n is 10 unless it is given.");
          },
          "show [NAME [n]]", "show qc_score 20"},
    Topic{"output", [] { return translated("write all results so far into a file"); },
          [] { return translated("What is shown later is in the file when it is written again."); },
          "output html|json|text FILE", "output html 'my report.html'"},
    Topic{"run", [] { return translated("run a file of command syntax"); },
          [] { return translated("Ctrl-C skips the commands that have not begun."); }, "run FILE",
          "run cohort.syntax"},
    Topic{"help", [] { return translated("show this list, or more on a topic"); }, nullptr, "help [TOPIC]",
          "help regression"},
    Topic{"quit", [] { return translated("leave; asks when jobs run or wait"); },
          [] { return translated("exit and Ctrl-D do the same."); }, "quit", "quit"},
    Topic{"GENOSTAT", [] { return translated("check the quality of FASTQ files, as a job"); },
          [] {
            return translated(
                "The job's results become a dataset of its name, and the analyses run over them. Several "
                "analyses may be asked for.");
          },
          "GENOSTAT\n"
          "  /JOB [NAME='name'] {FILE='file' ['file' ...] | FOLDER='folder'}\n"
          "       [ADAPTERS={NONE | ILLUMINA | NEXTERA | CUSTOM(sequence)}]\n"
          "  [/DESCRIPTIVES VARIABLES=names [SKEWNESS] [KURTOSIS]]\n"
          "  [/FREQUENCIES VARIABLES=names [NTILES=n] [PERCENTILES=p ...] [HISTOGRAM] [QUARTILES]]\n"
          "  [/CORRELATIONS VARIABLES=names [PEARSON={TRUE | FALSE}] [SPEARMAN] [KENDALL] [TWOTAIL] "
          "[ONETAIL]]\n"
          "  [/REGRESSION DEPENDENT=name INDEPENDENT=names [METHOD={ENTER | STEPWISE | BACKWARD | FORWARD}]\n"
          "               [CI=level] [NORMALPROBABILITYPLOT]].",
          "GENOSTAT /JOB NAME='run_1' FOLDER='run1' ADAPTERS=ILLUMINA\n"
          "  /DESCRIPTIVES VARIABLES=GC qc_score."},
    Topic{
        "GET DATA", [] { return translated("read a delimited text file as a dataset"); },
        [] { return translated("Types: AUTO, a number format such as F8.2, or a text format such as A20."); },
        "GET DATA /TYPE=TXT /FILE='name' [/ENCODING='UTF8'] [/DELIMITERS=\",\"] [/QUALIFIER='\"']\n"
        "  [/ARRANGEMENT=DELIMITED] [/FIRSTCASE=n] [/DATATYPEMIN PERCENTAGE=p]\n"
        "  /VARIABLES=name type ... [/MAP].",
        "GET DATA /TYPE=TXT /FILE='cohort.csv' /DELIMITERS=\",\" /FIRSTCASE=2\n"
        "  /VARIABLES=sample A20 age F3.0 weight AUTO."},
    Topic{"DATASET NAME", [] { return translated("name the active dataset, so that it stays open"); },
          nullptr, "DATASET NAME name.", "DATASET NAME cohort."},
    Topic{"DATASET ACTIVATE", [] { return translated("make another dataset the active one"); }, nullptr,
          "DATASET ACTIVATE name.", "DATASET ACTIVATE run_1."},
    Topic{"DATASET CLOSE", [] { return translated("close a dataset, or all"); },
          [] { return translated("* stands for the active one."); }, "DATASET CLOSE {name | * | ALL}.",
          "DATASET CLOSE run_1."},
    Topic{"DESCRIPTIVES", [] { return translated("means, deviations and other moments"); }, nullptr,
          "DESCRIPTIVES [VARIABLES=] list\n"
          "  [/STATISTICS=[DEFAULT] [ALL] [MEAN] [SEMEAN] [STDDEV] [VARIANCE] [RANGE] [MINIMUM] [MAXIMUM]\n"
          "               [SUM] [SKEWNESS] [KURTOSIS]]\n"
          "  [/MISSING={VARIABLE | LISTWISE}].",
          "DESCRIPTIVES GC qc_score /STATISTICS=ALL."},
    Topic{"FREQUENCIES", [] { return translated("counts of values, percentiles, histograms"); }, nullptr,
          "FREQUENCIES [VARIABLES=] list\n"
          "  [/FORMAT=[AVALUE | DVALUE | AFREQ | DFREQ] [TABLE | NOTABLE] [LIMIT(n)]]\n"
          "  [/NTILES=n] [/PERCENTILES=p ...] [/STATISTICS=[DEFAULT] [ALL] [NONE] [MEDIAN] [MODE] ...]\n"
          "  [/HISTOGRAM [NORMAL | NONORMAL]] [/ORDER={ANALYSIS | VARIABLE}].",
          "FREQUENCIES GC /FORMAT=NOTABLE /NTILES=4 /HISTOGRAM."},
    Topic{"CORRELATIONS", [] { return translated("Pearson's coefficients"); }, nullptr,
          "CORRELATIONS [VARIABLES=] list [WITH list]\n"
          "  [/PRINT=[TWOTAIL | ONETAIL] [SIG | NOSIG] [FULL | LOWER]]\n"
          "  [/STATISTICS=[DESCRIPTIVES] [XPROD] [ALL]] [/MISSING={PAIRWISE | LISTWISE}].",
          "CORRELATIONS GC qc_score /PRINT=NOSIG."},
    Topic{"NONPAR CORR", [] { return translated("Spearman's and Kendall's coefficients of ranks"); }, nullptr,
          "NONPAR CORR [VARIABLES=] list [WITH list]\n"
          "  [/PRINT=[SPEARMAN] [KENDALL] [BOTH] [TWOTAIL | ONETAIL] [SIG | NOSIG] [FULL | LOWER]]\n"
          "  [/MISSING={PAIRWISE | LISTWISE}].",
          "NONPAR CORR GC qc_score /PRINT=BOTH."},
    Topic{"REGRESSION", [] { return translated("linear regression"); }, nullptr,
          "REGRESSION [/VARIABLES=list] [/MISSING=LISTWISE]\n"
          "  [/STATISTICS=[DEFAULTS] [ALL] [R] [ANOVA] [COEFF] [OUTS] [CHANGE] [CI(level)] [TOL] [COLLIN] "
          "[ZPP]]\n"
          "  [/CRITERIA=[PIN(p)] [POUT(p)] [TOLERANCE(t)]] [/NOORIGIN | /ORIGIN]\n"
          "  /DEPENDENT=list /METHOD={ENTER | STEPWISE | FORWARD | BACKWARD} [list] ...\n"
          "  [/RESIDUALS=[PRESS] [NORMPROB]].",
          "REGRESSION /DEPENDENT=qc_score /METHOD=ENTER GC Count."},
    Topic{"SET", [] { return translated("the decimal sign of numbers in data files"); }, nullptr,
          "SET DECIMAL={DOT | COMMA}.", "SET DECIMAL=COMMA."},
    Topic{"PRESERVE", [] { return translated("keep the settings for RESTORE"); }, nullptr, "PRESERVE.",
          "PRESERVE."},
    Topic{"RESTORE", [] { return translated("bring back the settings that PRESERVE kept"); }, nullptr,
          "RESTORE.", "RESTORE."},
    Topic{"CACHE", [] { return translated("does nothing; an error without an active dataset"); }, nullptr,
          "CACHE.", "CACHE."},
    Topic{"EXECUTE", [] { return translated("does nothing; an error without an active dataset"); }, nullptr,
          "EXECUTE.", "EXECUTE."},
};

const Topic* findTopic(std::string_view name) {
  std::vector<std::string_view> names;
  for (const Topic& topic : kTopics) {
    names.push_back(topic.name);
  }
  if (common::equalsIgnoreCase(name, "exit")) name = "quit";
  const auto index = matchKeyword(name, names);
  return index ? &kTopics[*index] : nullptr;
}

}  // namespace

std::vector<std::string> helpTopics() {
  std::vector<std::string> names;
  for (const Topic& topic : kTopics) {
    names.emplace_back(topic.name);
  }
  return names;
}

std::string helpOverview() {
  std::size_t widest = 0;
  for (const Topic& topic : kTopics) {
    widest = std::max(widest, topic.name.size());
  }
  std::string text;
  for (const Topic& topic : kTopics) {
    text += std::string("  ").append(topic.name).append(widest + 2 - topic.name.size(), ' ') +
            topic.summary() + '\n';
  }
  return text + '\n' +
         translated(
             "A command ends with a period at the end of a line or with a blank line. \"help TOPIC\" "
             "says more.");
}

std::string helpOn(std::string_view name) {
  const Topic* topic = findTopic(name);
  if (topic == nullptr) return {};
  std::string text = std::string(topic->name) + ": " + topic->summary();
  if (topic->details != nullptr) text += '\n' + topic->details();
  const auto indented = [](std::string_view lines) {
    std::string block = "  ";
    for (const char c : lines) {
      block += c;
      if (c == '\n') block += "  ";
    }
    return block;
  };
  text += "\n\n" + indented(topic->usage);
  if (topic->example != topic->usage) {
    text += "\n\n" + translated("Example:") + '\n' + indented(topic->example);
  }
  return text;
}

}  // namespace genostat::standalone
