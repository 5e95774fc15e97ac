// genostat qc: what it writes, what it refuses, and what it shows of the results.
//
// After a wanted change, GENOSTAT_KEEP_TRANSCRIPT=1 writes the new transcript; read its difference before it
// is committed.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "platform/path_text.h"
#include "tests/support/run_program.h"
#include "tests/support/temporary_folder.h"

namespace genostat::test {
namespace {

namespace fs = std::filesystem;
using Arguments = std::vector<std::string>;
using testing::HasSubstr;

constexpr const char* kQcTranscript = GENOSTAT_SOURCE_DIR "/tests/standalone/console/qc_transcript.txt";
constexpr const char* kQcReads = "@r1\nACGTACGTAC\n+\nIIIIIIIIII\n@r2\nGGGGCCCCAA\n+\nIIIIIIIIII\n";

class QcConsole : public testing::Test {
 protected:
  QcConsole() {
    fs::create_directory(at("temp"));
    write("good.fq", kQcReads);
  }

  fs::path at(const std::string& name) const { return folder_.path() / platform::pathFromUtf8(name); }
  void write(const std::string& name, const std::string& text) const { writeWholeFile(at(name), text); }

  ProgramResult run(const Arguments& more, const std::string& columns = "80") const {
    Arguments arguments = {"qc", "--temp", "temp"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return runProgram({fs::absolute(GENOSTAT_BIN_DIR) / "genostat",
                       std::move(arguments),
                       folder_.path(),
                       "",
                       {{"LC_ALL", "C"}, {"COLUMNS", columns}}});
  }

  TemporaryFolder folder_;
};

TEST_F(QcConsole, PrintsTheCommandReadyToPaste) {
  const std::string hostile = "it's ''b'' \xC3\xBC (1)";
  fs::create_directory(at(hostile));
  fs::create_directory(at("more"));
  for (const char* name : {"/b.fastq", "/a'.FQ.GZ", "/.hidden.fq", "/notes.txt"}) {
    write(hostile + name, kQcReads);
    write(std::string("more") + name, kQcReads);
  }
  fs::create_directory(at("more/folder.fq"));
  for (const char* name : {"[a,b]", "{}"}) {
    write(name, kQcReads);
  }
  const struct {
    Arguments arguments;
    std::string command;
  } rows[] = {
      {{hostile},
       "GENOSTAT\n  /JOB NAME='AUTO'\n       FOLDER='it''s ''''b'''' \xC3\xBC (1)'\n       "
       "ADAPTERS=NONE.\n"},
      {{"[a,b]", "{}"},
       "GENOSTAT\n  /JOB NAME='AUTO'\n       FILE='[a,b]'\n            '{}'\n       ADAPTERS=NONE.\n"},
      {{"good.fq", "more", hostile + "/b.fastq", "--name", "my run", "--adapter", "acgtn"},
       "GENOSTAT\n  /JOB NAME='my run'\n       FILE='good.fq'\n            'more/a''.FQ.GZ'\n            "
       "'more/b.fastq'\n"
       "            'it''s ''''b'''' \xC3\xBC (1)/b.fastq'\n       ADAPTERS=CUSTOM(ACGTN).\n"},
      {{"good.fq",
        "--adapter",
        "Nextera",
        "--descriptives",
        "gc, QC_SCORE gc",
        "--descriptives",
        "Total_Bases",
        "--kurtosis",
        "--frequencies",
        "Sample",
        "--ntiles",
        "010",
        "--percentiles",
        "5, 95.5",
        "--quartiles",
        "--histogram",
        "--correlations",
        "all",
        "--no-pearson",
        "--kendall",
        "--one-tailed",
        "--regression",
        "qc_score~ GC+mean_phred_all_reads",
        "--method",
        "Backward",
        "--ci",
        "90",
        "--normal-plot"},
       "GENOSTAT\n  /JOB NAME='AUTO'\n       FILE='good.fq'\n       ADAPTERS=NEXTERA\n"
       "  /DESCRIPTIVES VARIABLES=GC qc_score Total_Bases\n                KURTOSIS\n"
       "  /FREQUENCIES VARIABLES=Sample\n               NTILES=10\n               PERCENTILES=5 95.5\n"
       "               QUARTILES\n               HISTOGRAM\n"
       "  /CORRELATIONS VARIABLES=Total_Sequences Total_Bases GC\n"
       "                          total_deduplicated_percentage avg_sequence_length\n"
       "                          median_sequence_length qc_score\n"
       "                          median_phred_first_10bp median_phred_last_10bp\n"
       "                          mean_phred_all_reads low_complexity_percentage\n"
       "                          unexpected_bases_percentage\n                          "
       "overrepresented_seq_count\n"
       "                PEARSON=FALSE\n                KENDALL\n                ONETAIL\n"
       "  /REGRESSION DEPENDENT=qc_score\n              INDEPENDENT=GC mean_phred_all_reads\n"
       "              METHOD=BACKWARD\n              CI=90\n              NORMALPROBABILITYPLOT.\n"},
  };
  for (const auto& row : rows) {
    Arguments arguments = row.arguments;
    arguments.emplace_back("--print-syntax");
    const ProgramResult result = run(arguments);
    EXPECT_EQ(result.out, row.command);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.status, 0);
  }
  // Odd names reach the analysis and come back, and so does the reason of a failure, once.
  const ProgramResult shown = run({hostile + "/b.fastq", hostile + "/a'.FQ.GZ", "--name", "my run"});
  EXPECT_EQ(shown.err, "job 'my run' queued\njob 'my run' running\njob 'my run' finished\n");
  EXPECT_THAT(shown.out, testing::AllOf(HasSubstr("\na' "), HasSubstr("\nb ")));
  write(hostile + "/c.fq", "@r1\nACGT\n");
  const ProgramResult failed = run({hostile + "/c.fq", "--name", "my run"});
  EXPECT_EQ(failed.err,
            "job 'my run' queued\njob 'my run' running\nerror: job 'my run' failed: " + hostile +
                "/c.fq: record 1, line 3: the file ends inside the record, before its '+' line\n");
  EXPECT_EQ(failed.status, 1);
}

TEST_F(QcConsole, RefusesBeforeAnyJobIsQueued) {
  write("reads.txt", kQcReads);
  fs::create_directory(at("empties"));
  write("empties/empty.fq", "");
  // Many long names without a long command line.
  fs::create_directory(at("long"));
  for (int i = 0; i < 20; ++i) {
    write("long/" + std::string(100, 'x') + std::to_string(i) + ".fq", kQcReads);
  }
  const Arguments manyFolders(70, "long");
  const std::string help = "\nTry \"genostat qc --help\".\n";
  const auto place = [](const std::string& option, int column, const std::string& text,
                        const std::string& message, const std::string& mark, const std::string& hint) {
    return option + ":1:" + std::to_string(column) + ": error: " + message + "\n  " + text + "\n  " +
           std::string(static_cast<std::size_t>(column - 1), ' ') + mark + "\n" +
           (hint.empty() ? "" : "  " + hint + "\n");
  };
  const struct {
    Arguments arguments;
    std::string err;
  } rows[] = {
      {{"missing.fq", "-", "*.fq", "temp", "empties/"},
       "error: cannot read \"missing.fq\": no such file or folder\n"
       "error: cannot read \"-\": a job cannot read standard input; genostat-analysis qc can\n"
       "error: cannot read \"*.fq\": no such file or folder; name the folder instead of a pattern\n"
       "error: cannot read \"temp\": no FASTQ files (.fastq, .fq, .fastq.gz, .fq.gz) in this folder\n"},
      {{"empties/", "--print-syntax"}, "error: cannot read \"empties/empty.fq\": it is empty\n"},
      {{"empties/", "--no-keep-going"}, "error: cannot read \"empties/empty.fq\": it is empty\n"},
      {{"--descriptives", "GC, qc_scor"},
       place("--descriptives", 5, "GC, qc_scor", "no column is called \"qc_scor\"", "^~~~~~~",
             "did you mean qc_score?")},
      {{"--correlations", "adapter_content"},
       place("--correlations", 1, "adapter_content", "adapter_content holds verdicts, no numbers",
             "^~~~~~~~~~~~~~~", "--frequencies takes it")},
      {{"--correlations", "GC gc"}, "error: --correlations: expected two columns or more\n"},
      {{"--frequencies", "GC +"},
       place("--frequencies", 4, "GC +", "expected the name of a column", "^", "")},
      {{"--regression", "qc_score"},
       place("--regression", 9, "qc_score", "expected ~ after the dependent column", "^",
             "as in 'qc_score ~ GC'")},
      {{"--regression", "GC ~ Total_Bases +"},
       place("--regression", 19, "GC ~ Total_Bases +", "expected the name of a column", "^", "")},
      {{"--regression", "GC~gc"}, place("--regression", 4, "GC~gc", "GC is on both sides", "^~", "")},
      {{"--regression", "GC~Total_Bases qc_score"},
       place("--regression", 16, "GC~Total_Bases qc_score", "expected + between columns", "^~~~~~~~", "")},
      {{"--adapter", "lumina"},
       "error: --adapter: expected none, illumina, nextera or a sequence of A, C, G, T and N, found "
       "\"lumina\"; did you mean illumina?\n"},
      {{"--name", "it's"},
       "error: --name: a job's name holds no quotes, slashes, asterisks and control characters, found "
       "\"it's\"\n"},
      {{"--correlations", "GC qc_score", "--no-pearson"},
       "error: --no-pearson leaves no coefficient; add --spearman or --kendall\n"},
      {{"--name", std::string(256, 'x')}, "error: --name: a job's name has at most 255 bytes\n"},
      {{"--name", "ALL"}, "error: --name: ALL cannot be the name of a job\n"},
      {{"reads.txt", "--csv", "reads.txt"}, "error: --csv names a file of reads\n"},
      {{"reads.txt", "--events", "reads.txt"}, "error: --events names a file of reads\n"},
      {{"--csv", "-"}, "error: --csv: expected the name of a file, found -\n"},
      {{"--html", "new.fq.GZ"}, "error: --html: \"new.fq.GZ\" is named like reads, which it would replace\n"},
      {manyFolders,
       "error: the names of 1401 files are too long for one job; give it the folder they are in, or fewer of "
       "them\n"},
      {{"--csv", "a", "--html", "./a"}, "error: --csv and --html name the same file\n"},
      {{"--histogram"}, "error: --histogram requires --frequencies" + help},
      {{"--frequencies", "GC", "--percentiles", "5,105"},
       "error: --percentiles: expected numbers from 0 to 100, found \"105\"" + help},
      {{"--frequencies", "GC", "--ntiles", "1e1"},
       "error: --ntiles: expected a whole number from 2 to 1000, found \"1e1\"" + help},
      {{"--freqencies", "GC"}, "error: unknown option \"--freqencies\"; did you mean --frequencies?" + help},
  };
  for (const auto& row : rows) {
    Arguments arguments = row.arguments;
    arguments.emplace_back("good.fq");
    const ProgramResult result = run(arguments);
    EXPECT_EQ(result.err, row.err);
    EXPECT_EQ(result.out, "") << row.err;
    EXPECT_EQ(result.status, 2) << row.err;
  }
  for (const auto& [option, err] :
       {std::pair("--fastqc-data", "error: cannot write into \"good.fq\": Not a directory\n"),
        std::pair("--temp", "error: the analysis cannot be started: the temporary folder")}) {
    const ProgramResult refused = run({"good.fq", option, "good.fq"});
    EXPECT_THAT(refused.err, testing::StartsWith(err));
    EXPECT_EQ(std::ranges::count(refused.err, '\n'), 1) << refused.err;
    EXPECT_EQ(refused.status, 1) << err;
  }
  EXPECT_EQ(readWholeFile(at("good.fq")), kQcReads);
}

// The limits of names belong to the module; here they are checked before a job is queued.
TEST_F(QcConsole, RefusesTheNamesThatTheModuleRefuses) {
  for (const std::string& name : {std::string(255, 'x'), std::string(256, 'x'), std::string("ALL"),
                                  std::string("LT"), std::string("WITH"), std::string("with")}) {
    write("name.syntax", "GENOSTAT /JOB NAME='" + name + "' FILE='good.fq'.\n");
    const ProgramResult module = runProgram({fs::absolute(GENOSTAT_BIN_DIR) / "genostat",
                                             {"run", "name.syntax", "--temp", "temp"},
                                             folder_.path(),
                                             "",
                                             {{"LC_ALL", "C"}}});
    const bool refused = module.err.find("Invalid job name") != std::string::npos;
    EXPECT_EQ(run({"good.fq", "--name", name, "--print-syntax"}).status, refused ? 2 : 0) << name;
    EXPECT_EQ(module.status, refused ? 1 : 0) << module.err;
  }
}

TEST_F(QcConsole, FailsWithoutTheFilesThatWereAskedFor) {
  fs::create_directory(at("data"));
  write("data/good_fastqc", "in the way");
  const ProgramResult result = run({"good.fq", "--csv", "kept.csv", "--fastqc-data", "data"});
  EXPECT_THAT(result.err,
              testing::EndsWith(
                  "\nerror: FastQC's data files of 1 of 1 samples could not be written into \"data\"\n"));
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(readWholeFile(at("kept.csv")), HasSubstr("\ngood,NONE,2,"));
}

TEST_F(QcConsole, GoesOnAfterSamplesThatCannotBeRead) {
  fs::create_directory(at("run"));
  write("run/a.fq", kQcReads);
  write("run/b.fq", "@r\nA\n+\n");
  write("run/c.fq", "");
  const std::string place = "b.fq: record 1, line 4";
  const std::string none(25, ',');
  const struct {
    Arguments inputs;
    std::string kept;  // the rows of b and c
  } rows[] = {{{"run"}, "\nb,NONE" + none + "\nc,NONE,0,0,0,"},
              // The module takes no empty file by its name.
              {{"run/a.fq", "run/c.fq", "run/b.fq"}, "\nb,NONE" + none + "\n\"c\",NONE,0,0,0,"}};
  for (const auto& row : rows) {
    Arguments arguments = row.inputs;
    arguments.insert(arguments.end(), {"--csv", "kept.csv", "--html", "page.html", "--fastqc-data", "data"});
    const ProgramResult result = run(arguments, "100");
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, testing::EndsWith(" finished\nerror: 1 sample of 3 could not be read\n"));
    EXPECT_THAT(result.out, HasSubstr("\n1 sample of 3 could not be read\n  x b: "));
    EXPECT_THAT(result.out, HasSubstr(place));
    EXPECT_THAT(readWholeFile(at("kept.csv")), HasSubstr(row.kept));
    EXPECT_THAT(readWholeFile(at("page.html")), HasSubstr("Samples that could not be read"));
    EXPECT_TRUE(namesIn(at("temp")).empty());
  }
  const ProgramResult stopped = run({"run", "--no-keep-going"});
  EXPECT_EQ(stopped.status, 2);
  EXPECT_THAT(stopped.err, HasSubstr("\"run/c.fq\": it is empty"));
  fs::remove(at("run/c.fq"));
  EXPECT_THAT(run({"run", "--no-keep-going"}).err, HasSubstr(place));
  EXPECT_THAT(run({"run/b.fq"}).err, HasSubstr(place));
}

TEST_F(QcConsole, KeepsATableForSpreadsheets) {
  write("=1+1.fq", kQcReads);
  EXPECT_EQ(run({"=1+1.fq", "--csv", "exact.csv"}).status, 0);
  EXPECT_EQ(run({"=1+1.fq", "--csv", "safe.csv", "--safe-csv"}).status, 0);
  EXPECT_THAT(readWholeFile(at("exact.csv")), HasSubstr("\n=1+1,NONE,2,"));
  EXPECT_THAT(readWholeFile(at("safe.csv")), HasSubstr("\n'=1+1,NONE,2,"));
  EXPECT_THAT(run({"good.fq", "--safe-csv"}).err, HasSubstr("--safe-csv requires --csv"));
}

// The example cohort, and pairs with long names on a narrow terminal.
TEST_F(QcConsole, ShowsTheKeptSummaries) {
  const fs::path examples = fs::path(GENOSTAT_SOURCE_DIR) / "examples";
  fs::copy(examples / "cohort", at("cohort"));
  fs::create_directory(at("run1"));
  fs::copy(examples / "control.fastq", at("run1/liver_S1_L001_R1_001.fastq"));
  fs::copy(examples / "control.fastq", at("run1/liver_S1_L001_R2_001.fastq"));
  fs::copy(examples / "treated.fastq.gz",
           at("run1/kidney_of_the_patient_with_number_12345_S2_L001_R1_001.fastq.gz"));
  const ProgramResult cohort =
      run({"cohort", "--adapter", "illumina", "--csv", "cohort.csv", "--fastqc-data", "data"});
  EXPECT_EQ(cohort.status, 0);
  EXPECT_EQ(namesIn(at("data")).size(), 12U);
  EXPECT_THAT(readWholeFile(at("cohort.csv")), testing::StartsWith("Sample,Adapter_Type,"));
  const ProgramResult narrow = run({"run1", "--descriptives", "GC"}, "60");
  const std::string shown = cohort.out + "----\n" + narrow.out;
  if (std::getenv("GENOSTAT_KEEP_TRANSCRIPT") != nullptr) writeWholeFile(kQcTranscript, shown);
  EXPECT_EQ(shown, readWholeFile(kQcTranscript));

  const ProgramResult json = run({"run1", "--output", "json", "--html", "report.html"});
  EXPECT_THAT(
      json.out,
      testing::AllOf(
          HasSubstr(R"({"label":"liver","children":[{"label":"R1"},{"label":"R2"}]})"),
          HasSubstr(
              R"(["fail",{"number":1.0,"decimals":0},"kidney_of_the_patient_with_number_12345 R1","Many)"),
          HasSubstr(R"("kind":"verdicts")"), testing::Not(HasSubstr("Imported Data"))));
  EXPECT_THAT(readWholeFile(at("report.html")), HasSubstr("Overrepresented sequences"));
  EXPECT_EQ(namesIn(at("temp")), Arguments{});
}

}  // namespace
}  // namespace genostat::test
