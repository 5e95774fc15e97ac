// GENOSTAT commands as a user types them: what the job record says, and what is refused.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <sstream>

#include "entry/analysis_subcommands.h"
#include "entry/command_grammar.h"
#include "entry/common_blocks.h"
#include "entry/job_subcommands.h"
#include "entry/record/genomic_parser_exception.h"
#include "host/control.h"
#include "jobs/geno_stat_algo_manager.h"
#include "standalone/data/dataset.h"
#include "standalone/output/output_document.h"
#include "standalone/output/text_renderer.h"
#include "standalone/services/current.h"
#include "standalone/syntax/command.h"
#include "tests/support/test_host.h"

namespace {

using genostat::test::TestHost;
using namespace genostat::standalone;

std::string joined(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) {
    text += (text.empty() ? "" : ",") + word;
  }
  return text;
}

// The whole record on one line.
std::string dump(const GenoJobSettings& s) {
  std::ostringstream out;
  out << "mode " << static_cast<unsigned>(s.mode()) << " files [" << joined(s.fastqFiles()) << "] folder ["
      << s.fastqFolder() << "] adapter " << adapterKeyword(s.adapterType()) << " ["
      << s.customAdapterSequence() << "] name [" << s.jobName() << "] csv [" << s.csvFilePath() << "] counts "
      << s.sampleCount() << ' ' << s.variableCount() << " message " << s.messageCode();
  if (const auto* d = s.descriptives()) {
    out << " D[" << joined(d->variables) << "]" << (d->skewness ? " skew" : "")
        << (d->kurtosis ? " kurt" : "");
  }
  if (const auto* f = s.frequencies()) {
    out << " F[" << joined(f->variables) << "] " << f->ntiles << " (";
    for (const double p : f->percentiles) {
      out << p << ' ';
    }
    out << ")" << (f->histogram ? " hist" : "") << (f->quartiles ? " quart" : "");
  }
  if (const auto* c = s.correlations()) {
    out << " C[" << joined(c->variables) << "]" << (c->pearson ? " p" : "") << (c->spearman ? " s" : "")
        << (c->kendall ? " k" : "") << (c->twoTail ? " two" : "") << (c->oneTail ? " one" : "");
  }
  if (const auto* r = s.regression()) {
    out << " R " << r->dependent << "~[" << joined(r->independent) << "] " << regressionKeyword(r->method)
        << " (" << r->confidenceInterval << ")" << (r->normalProbabilityPlot ? " plot" : "");
  }
  return out.str();
}

// Interprets one command; the record, or the error's text.
std::string interpret(const std::string& text, DatasetStore* datasets = nullptr) {
  const auto source = std::make_shared<SourceText>(SourceText{"test", text});
  const ScanResult scan = scanCommands(source);
  const CommandScope scope(scan.items.at(0).command);
  std::string parserError;
  const SessionScope session(
      {datasets, nullptr, [&](const Diagnostic& d) { parserError = "parser: " + d.message; }});
  CommandDescriptor descriptor("GENOSTAT");
  genostat::describeCommand(descriptor);
  ZORV_TokenSequence tokens(true);
  CommandSpec spec;
  if (UniversalParser(&tokens, spec, descriptor).getCommandSpecifications() != 0) return parserError;
  GenoJobSettings settings;
  try {
    genostat::interpretPrint(spec, &settings);
    genostat::interpretDelete(spec, &settings);
    genostat::interpretJob(spec, &settings);
  } catch (const GenomicParserException& error) {
    return std::string("error: ") + error.what() + " | " + dump(settings);
  }
  genostat::interpretDescriptives(spec, &settings);
  genostat::interpretFrequencies(spec, &settings);
  genostat::interpretCorrelations(spec, &settings);
  genostat::interpretRegression(spec, &settings);
  return dump(settings);
}

const std::string kEmpty = "mode 0 files [] folder [] adapter NONE [] name [] csv [] counts -1 -1 message 0";

TEST(Interpretation, FillsTheRecord) {
  const std::string base = "mode 0 files [] folder [";
  const std::pair<std::string, std::string> rows[] = {
      {"GENOSTAT.", kEmpty},
      {"GENOSTAT /JOB FOLDER='in' NAME='r 1' ADAPTERS=ILLUMINA.",
       base + "in] adapter ILLUMINA [] name [r 1] csv [] counts -1 -1 message 0"},
      {"GENOSTAT /JOB FOLDER='it''s' ADAPTERS=CUSTOM(acgtN).",
       base + "it's] adapter CUSTOM [ACGTN] name [] csv [] counts -1 -1 message 0"},
      {"GENOSTAT /JOB ADAPTERS=none NAME='auto'.",
       base + "] adapter NONE [] name [auto] csv [] counts -1 -1 message 0"},
      {"GENOSTAT /JOB FILE='' NAME='WITH' ADAPTERS=NONE /PRINT SAMPLE_COUNT=-1 MESSAGE=455.",
       "mode 1 files [] folder [] adapter NONE [] name [WITH] csv [] counts -1 0 message 455"},
      {"GENOSTAT /PRINT.", "mode 1 files [] folder [] adapter NONE [] name [] csv [] counts 0 0 message 0"},
      {"GENOSTAT /DELETE /JOB FILE='missing' FOLDER='f'.",
       "mode 2 files [] folder [] adapter NONE [] name [] csv [] counts -1 -1 message 0"},
      {"GENOSTAT /PRINT VARIABLE_COUNT=3 /DELETE FILE='x.csv'.",
       "mode 2 files [] folder [] adapter NONE [] name [] csv [x.csv] counts 0 3 message 0"},
      {"GENOSTAT /DESCRIPTIVES.", kEmpty + " D[]"},
      {"GENOSTAT /DESCRIPTIVES VARIABLES=GC qc_score KURTOSIS.", kEmpty + " D[GC,qc_score] kurt"},
      {"GENOSTAT /FREQUENCIES VARIABLES=GC NTILES=10 PERCENTILES=5 95.5 HISTOGRAM QUARTILES.",
       kEmpty + " F[GC] 10 (5 95.5 ) hist quart"},
      {"GENOSTAT /CORRELATIONS VARIABLES=a b.", kEmpty + " C[a,b] p"},
      {"GENOSTAT /CORRELATIONS PEARSON=FALSE SPEARMAN KENDALL TWOTAIL ONETAIL.", kEmpty + " C[] s k two one"},
      {"GENOSTAT /REGRESSION DEPENDENT=y INDEPENDENT=a b METHOD=BACKWARD CI=90.5 NORMALPROBABILITYPLOT.",
       kEmpty + " R y~[a,b] BACKWARD (90.500000) plot"},
  };
  for (const auto& [command, expected] : rows) {
    EXPECT_EQ(interpret(command), expected) << command;
  }
}

TEST(Interpretation, ChecksInputFiles) {
  const genostat::test::TemporaryFolder folder;
  const std::string good = folder.narrow("good.fq");
  const std::string empty = folder.narrow("empty.fq");
  std::ofstream(good) << "@r\nA\n+\nI\n";
  std::ofstream(empty).flush();
  const std::string missing = folder.narrow("missing.fq");
  const auto files = [](const std::string& list) { return interpret("GENOSTAT /JOB FILE=" + list + "."); };
  const auto quoted = [](const std::string& path) { return "'" + path + "' "; };
  EXPECT_THAT(files(quoted(good) + quoted(good)),
              testing::StartsWith("mode 0 files [" + good + "," + good + "]"));
  EXPECT_EQ(files(quoted(good) + quoted(empty)),
            "error: Error processing FASTQ file: " + empty + " | " + kEmpty);
  EXPECT_EQ(files(quoted(missing) + quoted(empty)), "error: File not found: " + missing + " | " + kEmpty);
  EXPECT_EQ(files(quoted(folder.narrow())), "error: File not found: " + folder.narrow() + " | " + kEmpty);
  EXPECT_EQ(files("''"), "error: File not found | " + kEmpty);
}

TEST(Interpretation, ChecksJobNames) {
  DatasetStore datasets;
  datasets.add({});
  datasets.nameActive("DATA");
  const SessionScope session({&datasets, nullptr, {}});
  const auto verdict = [](const std::string& name) -> std::string {
    try {
      return genostat::checkJobName(name) ? "fine" : "false";
    } catch (const GenomicParserException& error) {
      return error.what();
    }
  };
  EXPECT_EQ(verdict(std::string(255, 'a')), "fine");
  EXPECT_EQ(verdict(std::string(256, 'a')), "Invalid job name");
  for (const char* reserved : {"*", "ALL", "LT", "WITH"}) {
    EXPECT_EQ(verdict(reserved), "Invalid job name") << reserved;
  }
  for (const char* legal : {"all", "EQ", "with", "**", "it's", ""}) {
    EXPECT_EQ(verdict(legal), "fine") << legal;
  }
  EXPECT_EQ(verdict("Data"), "Duplicate job name");
}

TEST(Exceptions, CarryTextAndDetail) {
  EXPECT_STREQ(GenomicParserException(CommandErrorCode::QueueFull, "10").what(),
               "Job queue threshold exceeded. Maximum allowed jobs in queue is : 10");
  EXPECT_STREQ(GenomicParserException(static_cast<CommandErrorCode>(23)).what(), "Unspecified error");
}

TEST(Record, TakesTheHostsIdentifiers) {
  const std::tuple<int, int> identifiers[] = {{7, 12}};
  for (const auto& [workbook, paragraph] : identifiers) {
    setJobMetadata(workbook, paragraph);
    const GenoJobSettings settings;
    EXPECT_EQ(settings.workbookId(), workbook);
    EXPECT_EQ(settings.paragraphId(), paragraph);
    EXPECT_FALSE(settings.metadataJson().empty());
  }
  EXPECT_EQ(GetMetaDataJson(), "") << "taken, and not left for the next command";
  EXPECT_EQ(GenoJobSettings().workbookId(), -1);
}

TEST(Entry, RefusesBeforeItReads) {
  TestHost host;
  host.adapter.interactive = false;
  const char* const refusal =
      "GENOSTAT procedure is not supported in command-line mode. Please use the interactive ZORV Statistics "
      "client.\n";
  EXPECT_EQ(host.run("GENOSTAT /JOB FILE='missing.fq'."), refusal);
  EXPECT_EQ(host.run("GENOSTAT /PRINT."), refusal);
  EXPECT_THAT(host.run("GENOSTAT /NOSUCH."), testing::Not(testing::HasSubstr("command-line mode")))
      << "the parser's error alone";
  EXPECT_THAT(host.adapter.messages(), testing::IsEmpty());
}

TEST(Entry, SubmitsUntilTheQueueIsFull) {
  TestHost host;
  host.plan("wait go\nexit 0");
  const std::string command = "GENOSTAT /JOB FOLDER='in' NAME='AUTO'.\n";
  std::string commands;
  for (int i = 0; i < 10; ++i) {
    commands += command;
  }
  EXPECT_EQ(host.run(command), "");
  ASSERT_TRUE(host.adapter.waitFor("start Genomic_analysis_job_1 running"));
  EXPECT_EQ(host.run("GENOSTAT /JOB FOLDER='in' NAME='Genomic_analysis_job_1'."), "Duplicate job name\n");
  EXPECT_EQ(host.run(commands), "");
  EXPECT_EQ(host.adapter.messages().back(), "start Genomic_analysis_job_11 queued");
  const char* const refusal = "Job queue threshold exceeded. Maximum allowed jobs in queue is : 10\n";
  EXPECT_EQ(host.run(command), refusal);
  EXPECT_EQ(host.run("GENOSTAT /DELETE FILE='x'."), refusal);
  getGenoManagerInstance()->cancellAllJobsPending();
  host.signal("go");
  ASSERT_TRUE(host.adapter.waitForEnds(11));
  EXPECT_THAT(host.adapter.lastEndFields, testing::EndsWith("|1|1"));
}

TEST(Entry, RemovesResultFilesButNoFolders) {
  TestHost host;
  const std::string csv = host.temp().string() + "/1.csv";
  std::ofstream(csv) << "a\n";
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(host.run("GENOSTAT /JOB FILE='' NAME='x' /DELETE FILE='" + csv + "'."), "");
    EXPECT_FALSE(std::filesystem::exists(csv));
  }
  EXPECT_EQ(host.run("GENOSTAT /DELETE FILE='" + host.temp().string() + "'."), "");
  EXPECT_TRUE(std::filesystem::exists(host.temp()));
}

TEST(Entry, PrintsTheSummary) {
  struct Row {
    const char* print;
    std::vector<std::string> texts;
  };
  const Row rows[] = {
      {"SAMPLE_COUNT=2 VARIABLE_COUNT=25 MESSAGE=100",
       {"Summary", "Count", "Samples", "2", "Variables", "25", "Details", "Message",
        "Valid:2 fastQ file(s) detected.", "Dataset", "run"}},
      {"SAMPLE_COUNT=-3 MESSAGE=101", {"-3", "Error:Generic Error.", "None"}},
      {"MESSAGE=202", {"File not found:{{FILE_PATH}}", "None"}},
      {"MESSAGE=-2147483648", {"Unknown error occurred"}},
      {"MESSAGE=200", {"None"}},
  };
  TestHost host;
  for (const Row& row : rows) {
    OutputDocument output;
    std::string text;
    output.onItem([&text](const std::string& item) { text += renderItemAsText(item, {}); });
    EXPECT_EQ(host.run(std::string("GENOSTAT /JOB NAME='run' /PRINT ") + row.print + ".", &output), "");
    std::size_t position = 0;
    for (const std::string& expected : row.texts) {
      const std::size_t found = text.find(expected, position);
      EXPECT_NE(found, std::string::npos) << expected << " in " << text;
      if (found != std::string::npos) position = found + expected.size();
    }
  }
}

TEST(AutomaticNames, SkipDatasetsAndGiveUpAfterAHundred) {
  DatasetStore datasets;
  const SessionScope session({&datasets, nullptr, {}});
  EXPECT_EQ(GenoStatAlgoManager::generateUniqueJobName(), "Genomic_analysis_job_1");
  for (int n = 1; n <= 100; ++n) {
    datasets.add({});
    datasets.nameActive("GENOMIC_ANALYSIS_JOB_" + std::to_string(n));
    if (n == 1) {
      EXPECT_EQ(GenoStatAlgoManager::generateUniqueJobName(), "Genomic_analysis_job_2");
    }
  }
  EXPECT_EQ(interpret("GENOSTAT /JOB NAME='AUTO'.", &datasets),
            "error: Error generating automatic job name: Maximum limit for "
            "automatic job names exceeded. It should not be more than 100 | " +
                kEmpty);
}

TEST(CommonBlocks, AreCachedInOrder) {
  genostat::cacheCommonBlocks();
  const std::set<void*> distinct(genostat::commonBlocks().begin(), genostat::commonBlocks().end());
  EXPECT_EQ(distinct.size(), genostat::kCommonBlockCount);
}

}  // namespace
