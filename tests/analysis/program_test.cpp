// The built program: its two forms, its results, its exit codes and what it leaves behind.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <set>

#include "tests/analysis/analysis_support.h"
#include "tests/support/temporary_folder.h"

namespace genostat::test {
namespace {

namespace fs = std::filesystem;

constexpr bool kWindows = fs::path::preferred_separator == '\\';

struct Outcome {
  int code = -1;
  std::string output;
  std::string error;
};

std::string withoutCarriageReturns(std::string text) {
  text.erase(std::remove(text.begin(), text.end(), '\r'), text.end());
  return text;
}

class Program : public testing::Test {
 protected:
  // Runs the program with arguments that are quoted already; `before` is shell text put in front.
  Outcome run(const std::string& arguments, const std::string& before = {}) const {
    const fs::path program =
        fs::absolute(fs::path(GENOSTAT_BIN_DIR) / (kWindows ? "genostat-analysis.exe" : "genostat-analysis"));
    const auto quoted = [](fs::path path) { return "\"" + path.make_preferred().string() + "\""; };
    std::string line = before + quoted(program) + " " + arguments + " >" + quoted(streams_.path() / "out") +
                       " 2>" + quoted(streams_.path() / "err");
    // The command interpreter takes one pair of quotes away.
    if (kWindows) line = "\"" + line + "\"";
    const int status = std::system(line.c_str());
    return {kWindows ? status : status >> 8, withoutCarriageReturns(readFile(streams_.path() / "out")),
            withoutCarriageReturns(readFile(streams_.path() / "err"))};
  }

  Outcome launch(const std::string& json, const std::string& before = {}) const {
    return run("\"some script.pyc\" \"" + toBase64(json) + "\"", before);
  }

  static std::string json(const std::string& input, const std::string& csv,
                          const std::string& adapter = "NONE") {
    return "{\"fastq_data\":[{\"adapter\":\"" + adapter + "\",\"custom_sequence\":\"ACGX\",\"CSV_Path\":\"" +
           csv + "\"," + input + "}]}";
  }

  // Inside the test's folder, as JSON and messages spell it.
  std::string at(const std::string& name) const { return folder_.path().generic_string() + "/" + name; }

  std::set<std::string> filesLeft() const {
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder_.path())) {
      names.insert(platform::pathToUtf8(entry.path().filename()));
    }
    return names;
  }

  TemporaryFolder folder_;
  TemporaryFolder streams_;
};

const std::string kHeader =
    "Sample,Adapter_Type,Total_Sequences,Total_Bases,Sequence_length,GC,total_deduplicated_percentage,"
    "avg_sequence_length,median_sequence_length,basic_statistics,per_base_sequence_quality,"
    "per_sequence_quality_scores,per_base_sequence_content,per_sequence_gc_content,per_base_n_content,"
    "sequence_length_distribution,sequence_duplication_levels,overrepresented_sequences,adapter_content,"
    "per_tile_sequence_quality,qc_score,median_phred_first_10bp,median_phred_last_10bp,mean_phred_all_reads,"
    "low_complexity_percentage,unexpected_bases_percentage,overrepresented_seq_count\n";

TEST_F(Program, WritesOneRowPerSample) {
  writeFile(folder_.path() / platform::pathFromUtf8("pr\xC3\xB8ve,1.fastq"),
            "@a\r\nACGT\r\n+\r\nII5I\r\n@b\r\ncN\r\n+\r\n+I\r\n");
  writeFile(folder_.path() / "empty_read.fq", "@a\n\n+\n\n");
  // A file of an earlier job, and what a killed one may leave.
  writeFile(folder_.path() / "result.error", "{}");
  writeFile(folder_.path() / "result.csv.part", "old");
  const Outcome outcome = launch(json("\"folder\":\"" + at("") + "\"", at("result.csv"), "ILLUMINA"));
  EXPECT_EQ(outcome.code, 0) << outcome.error;
  EXPECT_EQ(outcome.output + outcome.error, "");
  EXPECT_EQ(readFile(folder_.path() / "result.csv"),
            kHeader + "empty_read,ILLUMINA,1,0,0,,,0.0000,0,,,,,,,,,,,,,,,,,,\n" +
                "\"pr\xC3\xB8ve,1\",ILLUMINA,2,6,2-4,60.0000,,3.0000,3,,,,,,,,,,,,,,,31.6667,,,\n");
  EXPECT_EQ(filesLeft(), (std::set<std::string>{"empty_read.fq", "pr\xC3\xB8ve,1.fastq", "result.csv"}));
}

TEST_F(Program, TellsEveryFailure) {
  writeFile(folder_.path() / "good.fq", "@a\nA\n+\nI\n");
  writeFile(folder_.path() / "bad.fq", "@a\nA\n+\nI\n@b\nACGTA\n+\nIIII\n");
  fs::create_directory(folder_.path() / "none");
  writeFile(folder_.path() / "secret.fq", "@a\nA\n+\nI\n");
  fs::permissions(folder_.path() / "secret.fq", fs::perms::none);
  const std::set<std::string> inputs = filesLeft();
  const auto files = [&](const std::string& name) {
    return "\"files\":[\"" + at("good.fq") + "\",\"" + at(name) + "\"]";
  };
  struct Case {
    std::string json;
    int code;
    std::string member;  // with its value; empty when the code has none
    std::string sentence;
  };
  const std::string csv = at("result.csv");
  std::vector<Case> cases = {
      {json(files("no.fq"), csv), 2, "\"FILE_PATH\":\"" + at("no.fq") + "\",",
       at("no.fq") + ": no such file"},
      {json("\"x\":1", csv), 4, "", "the request has neither \\\"files\\\" nor \\\"folder\\\""},
      {json(files("bad.fq"), csv), 5, "\"FILE_NAME\":\"bad.fq\",",
       "bad.fq: record 2, line 8: the quality has 4 characters, the sequence 5"},
      {json("\"folder\":\"" + at("none") + "\"", csv), 8, "\"FOLDER_PATH\":\"" + at("none") + "\",",
       at("none") + ": no FASTQ files (.fastq, .fq, .fastq.gz, .fq.gz) in this folder"},
      {json(files("good.fq"), csv, "CUSTOM"), 10, "\"ADAPTER_SEQUENCE\":\"ACGX\",",
       "the adapter sequence \\\"ACGX\\\" has other letters than A, C, G, T and N"},
  };
  // The superuser may read everything, and so may everyone on a system without these permissions.
  if (!std::ifstream(folder_.path() / "secret.fq")) {
    cases.push_back({json(files("secret.fq"), csv), 7, "\"RESOURCE_PATH\":\"" + at("secret.fq") + "\",",
                     at("secret.fq") + ": Permission denied"});
  }
  for (const Case& one : cases) {
    const Outcome outcome = launch(one.json);
    EXPECT_EQ(outcome.code, one.code) << one.json;
    EXPECT_EQ(readFile(folder_.path() / "result.error"),
              "{" + one.member + "\"ERROR_MESSAGE\":\"" + one.sentence + "\"}");
    std::string plain = one.sentence;
    plain.erase(std::remove(plain.begin(), plain.end(), '\\'), plain.end());
    EXPECT_EQ(outcome.error, "genostat-analysis: error: " + plain + "\n");
    fs::remove(folder_.path() / "result.error");
    EXPECT_EQ(filesLeft(), inputs) << one.json;
  }
  fs::permissions(folder_.path() / "secret.fq", fs::perms::all);
}

TEST_F(Program, TellsAnOutputThatCannotBeWritten) {
  writeFile(folder_.path() / "good.fq", "@a\nA\n+\nI\n");
  const std::string files = "\"files\":[\"" + at("good.fq") + "\"]";
  const Outcome vanished = launch(json(files, at("gone/r.csv")));
  EXPECT_EQ(vanished.code, 9);
  EXPECT_NE(vanished.error.find("gone"), std::string::npos) << vanished.error;
  EXPECT_NE(vanished.error.find("r.csv: writing failed: No such file or directory\n"), std::string::npos)
      << vanished.error;

  fs::create_directory(folder_.path() / "taken.csv");
  EXPECT_EQ(launch(json(files, at("taken.csv"))).code, 9);
  EXPECT_EQ(filesLeft(), (std::set<std::string>{"good.fq", "taken.csv", "taken.error"}));
  if (kWindows) return;
  // No room for more than one block of 512 bytes, less than the header line.
  const Outcome full = launch(json(files, at("full.csv")), "trap '' XFSZ; ulimit -f 1; ");
  EXPECT_EQ(full.code, 9);
  EXPECT_EQ(full.error, "genostat-analysis: error: " + at("full.csv") + ": writing failed: File too large\n");
  EXPECT_EQ(readFile(folder_.path() / "full.error").substr(0, 15), "{\"OUTPUT_PATH\":");
  EXPECT_EQ(filesLeft(), (std::set<std::string>{"full.error", "good.fq", "taken.csv", "taken.error"}));
}

TEST_F(Program, RefusesWrongArguments) {
  const std::vector<std::pair<std::string, int>> cases = {
      {"", 13},           {"script", 13},  {"script e30= more", 13}, {"qc", 13},    {"--nonsense", 13},
      {"script \"\"", 3}, {"script !", 3}, {"script e30=", 4},       {"--help", 0}, {"qc --help", 0}};
  for (const auto& [arguments, code] : cases) {
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.code, code) << arguments;
    EXPECT_EQ(outcome.error.empty(), code == 0) << arguments;
    EXPECT_EQ(outcome.error.find("Usage: genostat-analysis SCRIPT PAYLOAD\n") != std::string::npos,
              code == 13)
        << arguments;
  }
  EXPECT_EQ(run("--version").output.substr(0, 18), "genostat-analysis ");
}

TEST_F(Program, MeasuresForPeople) {
  writeFile(folder_.path() / "good.fq", "@a\nG\n+\n5\n");
  const std::string row = ",1,1,1,100.0000,,1.0000,1,,,,,,,,,,,,,,,20.0000,,,\n";
  const std::string good = "\"" + at("good.fq") + "\"";
  EXPECT_EQ(run("qc --adapter NextEra " + good + " \"" + at("") + "\"").output,
            kHeader + "good,NEXTERA" + row + "good,NEXTERA" + row);
  EXPECT_EQ(run("qc " + good + " --adapter acgt --output \"" + at("o.csv") + "\"").code, 0);
  EXPECT_EQ(readFile(folder_.path() / "o.csv"), kHeader + "good,CUSTOM" + row);
  EXPECT_EQ(run("qc --adapter custom " + good).code, 10);
  EXPECT_EQ(run("qc " + good + " \"" + at("no.fq") + "\" --output \"" + at("p.csv") + "\"").code, 2);
  EXPECT_EQ(filesLeft(), (std::set<std::string>{"good.fq", "o.csv"}));
}

}  // namespace
}  // namespace genostat::test
