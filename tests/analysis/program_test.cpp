// The built program: its two forms, its results, its exit codes and what it leaves behind.
#include <gtest/gtest.h>

#include <fstream>

#include "tests/analysis/base64_text.h"
#include "tests/support/abandoned_part.h"
#include "tests/support/run_program.h"
#include "tests/support/temporary_folder.h"

namespace genostat::test {
namespace {

namespace fs = std::filesystem;

using Names = std::vector<std::string>;

class Program : public testing::Test {
 protected:
  const fs::path& folder() const { return folder_.path(); }
  void write(const std::string& name, const std::string& text) const {
    writeWholeFile(folder() / platform::pathFromUtf8(name), text);
  }

  // Runs in the test's folder, so that names need no path.
  ProgramResult run(const std::vector<std::string>& arguments) const {
    return runProgram(
        {fs::absolute(fs::path(GENOSTAT_BIN_DIR) / "genostat-analysis"), arguments, folder(), {}, {}});
  }
  ProgramResult launch(const std::string& json) const { return run({"some script.pyc", toBase64(json)}); }

  static std::string json(const std::string& input, const std::string& csv = "result.csv",
                          const std::string& adapter = "NONE") {
    return "{\"fastq_data\":[{\"adapter\":\"" + adapter + "\",\"custom_sequence\":\"ACGX\",\"CSV_Path\":\"" +
           csv + "\"," + input + "}]}";
  }

 private:
  TemporaryFolder folder_;
};

const std::string kHeader =
    "Sample,Adapter_Type,Total_Sequences,Total_Bases,Sequence_length,GC,total_deduplicated_percentage,"
    "avg_sequence_length,median_sequence_length,basic_statistics,per_base_sequence_quality,"
    "per_sequence_quality_scores,per_base_sequence_content,per_sequence_gc_content,per_base_n_content,"
    "sequence_length_distribution,sequence_duplication_levels,overrepresented_sequences,adapter_content,"
    "per_tile_sequence_quality,qc_score,median_phred_first_10bp,median_phred_last_10bp,mean_phred_all_reads,"
    "low_complexity_percentage,unexpected_bases_percentage,overrepresented_seq_count\n";
const std::string kGoodRead = "@a\nG\n+\n5\n";
const std::string kGoodRow =
    ",1,1,1,100.0000,100.000000,1.0000,1,pass,pass,fail,fail,fail,pass,pass,pass,fail,warn,,55.00,20,20,"
    "20.0000,0.0000,0.0000,1\n";

TEST_F(Program, WritesOneRowPerSample) {
  write("pr\xC3\xB8ve,1.fastq", "@a\r\nACGT\r\n+\r\nII5I\r\n@b\r\ncN\r\n+\r\n+I\r\n");
  write("empty_read.fq", "@a\n\n+\n\n");
  // Left by an earlier job and by a killed one.
  write("result.error", "{}");
  leaveAbandonedPart(folder());
  const ProgramResult outcome = launch(json("\"folder\":\".\"", "result.csv", "ILLUMINA"));
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.out + outcome.err, "");
  EXPECT_EQ(readWholeFile(folder() / "result.csv"),
            kHeader +
                "empty_read,ILLUMINA,1,0,0,,100.000000,0.0000,0,pass,,,pass,pass,pass,fail,pass,fail,warn,,"
                "68.75,,,,0.0000,,1\n"
                "\"pr\xC3\xB8ve,1\",ILLUMINA,2,6,2-4,60.0000,100.000000,3.0000,3,pass,pass,warn,fail,warn,"
                "fail,warn,pass,fail,warn,,50.00,40,40,31.6667,0.0000,0.0000,2\n");
  EXPECT_EQ(namesIn(folder()), (Names{"empty_read.fq", "pr\xC3\xB8ve,1.fastq", "result.csv"}));
}

TEST_F(Program, TellsEveryFailure) {
  write("good.fq", kGoodRead);
  write("bad.fq", kGoodRead + "@b\nACGTA\n+\nIIII\n");
  write("secret.fq", kGoodRead);
  fs::create_directory(folder() / "none");
  fs::permissions(folder() / "secret.fq", fs::perms::none);
  const Names inputs = namesIn(folder());
  struct Case {
    std::string json;
    int code;
    std::string member;  // with its value; empty when the code has none
    std::string sentence;
  };
  std::vector<Case> cases = {
      {json(R"("files":["good.fq","no.fq"])"), 2, R"("FILE_PATH":"no.fq",)",
       R"(cannot read \"no.fq\": no such file)"},
      {json("\"x\":1"), 4, "", R"(the request has neither \"files\" nor \"folder\")"},
      {json(R"("files":["good.fq","bad.fq"])"), 5, R"("FILE_NAME":"bad.fq",)",
       "bad.fq: record 2, line 8: the quality has 4 characters, the sequence 5"},
      {json(R"("files":["./none/"])"), 5, R"("FILE_NAME":"none",)",
       R"(cannot read \"./none/\": it is a folder)"},
      {json(R"("folder":"none")"), 8, R"("FOLDER_PATH":"none",)",
       R"(cannot read \"none\": no FASTQ files (.fastq, .fq, .fastq.gz, .fq.gz) in this folder)"},
      {json(R"("files":["good.fq"])", "result.csv", "CUSTOM"), 10, R"("ADAPTER_SEQUENCE":"ACGX",)",
       R"(the adapter sequence \"ACGX\" has other letters than A, C, G, T and N)"},
  };
  // Everyone may read it for the superuser, or on a system without these permissions.
  if (!std::ifstream(folder() / "secret.fq")) {
    cases.push_back({json(R"("files":["secret.fq"])"), 7, R"("RESOURCE_PATH":"secret.fq",)",
                     R"(cannot read \"secret.fq\": Permission denied)"});
  }
  for (const Case& one : cases) {
    const ProgramResult outcome = launch(one.json);
    EXPECT_EQ(outcome.status, one.code) << one.json;
    EXPECT_EQ(readWholeFile(folder() / "result.error"),
              "{" + one.member + "\"ERROR_MESSAGE\":\"" + one.sentence + "\"}");
    EXPECT_EQ(outcome.err, "");
    fs::remove(folder() / "result.error");
    EXPECT_EQ(namesIn(folder()), inputs) << one.json;
  }
  fs::permissions(folder() / "secret.fq", fs::perms::all);
}

TEST_F(Program, TellsAnOutputThatCannotBeWritten) {
  write("good.fq", kGoodRead);
  const ProgramResult vanished = launch(json(R"("files":["good.fq"])", "gone/r.csv"));
  EXPECT_EQ(vanished.status, 9);
  EXPECT_EQ(vanished.err, "error: cannot write \"gone/r.csv\": No such file or directory\n");
  fs::create_directory(folder() / "taken.csv");
  write("bad.fq", "not read");
  for (const auto& [target, reason] : {std::pair("taken.csv", "Is a directory"),
                                       std::pair("./good.fq", "this is one of the files to measure")}) {
    const ProgramResult outcome = launch(json(R"("files":["good.fq","bad.fq"])", target));
    EXPECT_EQ(outcome.status, 9) << target;
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(readWholeFile((folder() / target).replace_extension(".error")),
              R"({"OUTPUT_PATH":")" + std::string(target) + R"(","ERROR_MESSAGE":"cannot write \")" + target +
                  R"(\": )" + reason + "\"}");
  }
  fs::remove(folder() / "bad.fq");
  EXPECT_EQ(readWholeFile(folder() / "good.fq"), kGoodRead);
  fs::remove(folder() / "good.error");
  EXPECT_EQ(namesIn(folder()), (Names{"good.fq", "taken.csv", "taken.error"}));

  if (!fs::exists("/bin/sh") || fs::path::preferred_separator == '\\') return;
  EXPECT_EQ(run({"qc", "good.fq", "--csv", "/dev/null", "--json", "/dev/null"}).status, 0);
  // No room for more than 512 bytes, less than the header line: noticed when the file is
  // closed, and with many samples before.
  for (const int samples : {1, 300}) {
    std::string files = "\"good.fq\"";
    for (int i = 1; i < samples; ++i) {
      files += ",\"good.fq\"";
    }
    const ProgramResult full =
        runProgram({"/bin/sh",
                    {"-c", "ulimit -f 1; exec \"$0\" \"$@\"", GENOSTAT_BIN_DIR "/genostat-analysis", "script",
                     toBase64(json("\"files\":[" + files + "]", "full.csv"))},
                    folder(),
                    {},
                    {}});
    EXPECT_EQ(full.status, 9) << samples;
    EXPECT_EQ(full.err, "");
    EXPECT_EQ(readWholeFile(folder() / "full.error"),
              R"({"OUTPUT_PATH":"full.csv","ERROR_MESSAGE":"cannot write \"full.csv\": File too large"})");
    EXPECT_EQ(namesIn(folder()), (Names{"full.error", "good.fq", "taken.csv", "taken.error"}));
  }
}

TEST_F(Program, MeasuresForPeople) {
  write("good.fq", kGoodRead);
  EXPECT_EQ(run({"qc", "--adapter", "NextEra", "good.fq", "."}).out,
            kHeader + "good,NEXTERA" + kGoodRow + "good,NEXTERA" + kGoodRow);
  EXPECT_EQ(run({"qc", "good.fq", "--adapter", "acgt", "--csv", "o.csv"}).status, 0);
  EXPECT_EQ(readWholeFile(folder() / "o.csv"), kHeader + "good,CUSTOM" + kGoodRow);
  EXPECT_EQ(run({"qc", "--adapter", "custom", "good.fq"}).status, 10);
  EXPECT_EQ(run({"qc", "good.fq", "no.fq", "--csv", "p.csv"}).status, 2);
  const std::string piped = runProgram({fs::absolute(fs::path(GENOSTAT_BIN_DIR) / "genostat-analysis"),
                                        {"qc", "-", "--threads", "08", "--phred", "33"},
                                        folder(),
                                        kGoodRead,
                                        {}})
                                .out;
  EXPECT_EQ(piped, kHeader + "stdin,NONE" + kGoodRow);
  // Either output alone, or both.
  EXPECT_EQ(run({"qc", "good.fq", "--json", "-"}).out.substr(0, 23), R"({"format":"genostat-qc")");
  EXPECT_EQ(run({"qc", "good.fq", "--json", "o.json"}).out, kHeader + "good,NONE" + kGoodRow);
  EXPECT_EQ(readWholeFile(folder() / "o.json"), run({"qc", "good.fq", "--json", "-"}).out);
  EXPECT_EQ(namesIn(folder()), (Names{"good.fq", "o.csv", "o.json"}));
}

TEST_F(Program, TakesPathsAsTheyAre) {
  const Names names = {"[run,1]", "[]", "[[b]]", "{}", "%%", "qc"};
  Names arguments = {"qc", "--csv=[o]"};
  std::string rows = kHeader;
  for (const std::string& name : names) {
    write(name, kGoodRead);
    arguments.push_back(name);
    rows += (name == "[run,1]" ? "\"[run,1]\"" : name) + ",NONE" + kGoodRow;
  }
  EXPECT_EQ(run(arguments).err, "");
  EXPECT_EQ(readWholeFile(folder() / "[o]"), rows);
  write("a.fq", kGoodRead);
  EXPECT_EQ(run({"qc", "[a.fq]"}).status, 2);
}

TEST_F(Program, ShowsNoFormulasToSpreadsheets) {
  for (const char* name : {"=1+1.fq", "-1.fq", "@a, b.fq"}) {
    write(name, kGoodRead);
  }
  EXPECT_EQ(launch(json("\"folder\":\".\"")).status, 0);
  const std::string exact =
      kHeader + "-1,NONE" + kGoodRow + "=1+1,NONE" + kGoodRow + "\"@a, b\",NONE" + kGoodRow;
  EXPECT_EQ(readWholeFile(folder() / "result.csv"), exact);
  EXPECT_EQ(run({"qc", "."}).out, exact);
  EXPECT_EQ(run({"qc", ".", "--safe-csv"}).out,
            kHeader + "-1,NONE" + kGoodRow + "'=1+1,NONE" + kGoodRow + "\"'@a, b\",NONE" + kGoodRow);
}

TEST_F(Program, SaysWhatAFileIsThatIsNoFastq) {
  using std::string_literals::operator""s;
  const auto measures = [](const std::string& command) {
    return "; \"" + command + " | genostat-analysis qc -\" measures its reads";
  };
  const std::vector<std::pair<std::string, std::string>> kinds = {
      {"BAM\1\0\0\0\0"s, "this is a BAM file" + measures("samtools fastq FILE")},
      {"@HD\tVN:1.6\n@SQ\tSN:1\tLN:9\nr\t4\t*\n", "this is a SAM file" + measures("samtools fastq FILE")},
      {">a\nACGT\n>b\nAC\n", "this is a FASTA file: its sequences have no qualities"},
      {"\xFD\x37zXZ\0\0"s, "this is an xz file" + measures("xz -dc FILE")},
      {"\x28\xB5\x2F\xFD\x04\n", "this is a zstd file" + measures("zstd -dc FILE")},
      {"a.fq" + std::string(253, '\0') + "ustar  ", "this is a tar archive" + measures("tar -xOf FILE")},
      {"<!DOCTYPE html>\n<title>Log in</title>\n",
       "this is a web page, such as one that asks for a login: download the file again"},
      {"version https://git-lfs.github.com/spec/v1\noid sha256:0\nsize 9\n",
       "this is a pointer of Git LFS: \"git lfs pull\" gets the file"},
      {"\xEF\xBB\xBF" + kGoodRead,
       "a byte order mark stands before the first record" + measures("tail -c +4 FILE")},
      {"\xFF\xFE@\0r\0\n\0"s, "this text is in UTF-16" + measures("iconv -f UTF-16 -t UTF-8 FILE")},
      {"@r\rACGT\r+\rIIII\r", "lines end in a carriage return alone" + measures("tr '\\r' '\\n' < FILE")},
      {"@r\nACGT\nAC\n+\nIIII\nII\n", "sequences stand on several lines" + measures("seqtk seq FILE")},
      {"@r\nACGT\n?\nIIII\n", "record 1, line 3: the third line starts with '?' instead of '+'"},
      {kGoodRead + "@r\nACGT\nAC\n", "record 2, line 7: the third line starts with 'A' instead of '+'"},
  };
  for (const auto& [bytes, sentence] : kinds) {
    write("reads.fq", bytes);
    EXPECT_EQ(run({"qc", "reads.fq"}).err, "error: reads.fq: " + sentence + "\n");
  }
}

TEST_F(Program, GoesOnAfterSamplesThatCannotBeRead) {
  write("bad.fq", "@r\nA\n+\n");
  write("empty.fq", "");
  write("good.fq", kGoodRead);
  const std::string torn = "bad.fq: record 1, line 4: the file ends inside the record, before its quality";
  const std::string none(25, ',');
  const std::string empty = "0,0,0,,,,,pass" + std::string(17, ',') + "0\n";

  const ProgramResult people = run({"qc", "bad.fq", "empty.fq", "good.fq", "missing.fq", "--keep-going",
                                    "--json", "qc.json", "--csv", "-"});
  EXPECT_EQ(people.status, 1);
  EXPECT_EQ(people.err, "error: " + torn + "\nerror: cannot read \"missing.fq\": no such file\n");
  EXPECT_EQ(people.out, kHeader + "bad,NONE" + none + "\nempty,NONE," + empty + "good,NONE" + kGoodRow +
                            "missing,NONE" + none + "\n");
  EXPECT_NE(readWholeFile(folder() / "qc.json").find("\"notRead\":\"" + torn + '"'), std::string::npos);

  const auto launchOn = [&](const std::string& input) {
    return runProgram({fs::absolute(fs::path(GENOSTAT_BIN_DIR) / "genostat-analysis"),
                       {"some script.pyc", toBase64(json(input))},
                       folder(),
                       {},
                       {{"GENOSTAT_KEEP_GOING", "1"}}});
  };
  EXPECT_EQ(launchOn(R"("files":["bad.fq","good.fq"])").status, 0);
  EXPECT_EQ(readWholeFile(folder() / "result.csv"), kHeader + "bad,NONE" + none + "\ngood,NONE" + kGoodRow);
  EXPECT_EQ(
      readWholeFile(folder() / "result.csv.notread"),
      R"({"format":"genostat-not-read","version":1,"samples":[{"name":"bad","file":"bad.fq","reason":")" +
          torn + "\"}]}\n");
  // With nothing read at all it has failed, and nothing of the earlier job is left to be taken for its own.
  fs::remove(folder() / "result.csv");
  EXPECT_EQ(launchOn(R"("files":["bad.fq","missing.fq"])").status, 5);
  EXPECT_EQ(namesIn(folder()), (Names{"bad.fq", "empty.fq", "good.fq", "qc.json", "result.error"}));
}

TEST_F(Program, RefusesWhatPeopleMistype) {
  write("good.fq", kGoodRead);
  write("reads.txt", kGoodRead);
  const std::vector<std::pair<Names, std::string>> cases = {
      {{"--threads", "0"}, "--threads: expected a whole number from 1 to 256, found \"0\""},
      {{"--threads", "2x"}, "--threads: expected a whole number from 1 to 256, found \"2x\""},
      {{"--phred", "50"}, "--phred: expected 33 or 64, found \"50\""},
      {{"--csv", "-", "--json", "-"}, "--csv and --json cannot both go to standard output"},
      {{"--csv", "x", "--json", "./x"}, "--csv and --json cannot both go to \"./x\""},
      {{"--csv", "b.FASTQ.gz"}, "--csv: \"b.FASTQ.gz\" is named like reads, which it would replace"},
      {{"--json", ""}, "--json: the value is empty"},
      {{"--csv", "./reads.txt"}, "cannot write \"./reads.txt\": this is one of the files to measure"},
      {{"--fastqc-data", "-"}, "--fastqc-data: expected a folder, found \"-\""},
      {{"-", "-"}, "standard input can be read only once"},
  };
  for (const auto& [options, sentence] : cases) {
    Names arguments = {"qc", "good.fq", "reads.txt"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    const ProgramResult outcome = run(arguments);
    EXPECT_EQ(outcome.status, 2) << sentence;
    EXPECT_EQ(outcome.err.substr(0, outcome.err.find('\n')), "error: " + sentence);
  }
  EXPECT_EQ(namesIn(folder()), (Names{"good.fq", "reads.txt"}));
}

}  // namespace
}  // namespace genostat::test
