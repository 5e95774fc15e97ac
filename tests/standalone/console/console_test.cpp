// The built program on syntax in a temporary folder: streams, exit status, and what it leaves behind.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <rapidjson/document.h>

#include <chrono>
#include <regex>
#include <thread>

#include "platform/process.h"
#include "tests/support/run_program.h"
#include "tests/support/temporary_folder.h"

namespace genostat::test {
namespace {

namespace fs = std::filesystem;
using Arguments = std::vector<std::string>;
using testing::Test;

constexpr const char* kReads = "@r1\nACGTACGTAC\n+\nIIIIIIIIII\n@r2\nGGGGCCCCAA\n+\nIIIIIIIIII\n";
constexpr const char* kUnknownCommandHint =
    "  expected CACHE, CORRELATIONS, DATASET, DESCRIPTIVES, EXECUTE, FREQUENCIES, GENOSTAT, GET, NONPAR, "
    "PRESERVE, REGRESSION, RESTORE or SET";

class Console : public Test {
 protected:
  Console() {
    fs::create_directory(at("temp"));
    fs::create_directory(at("home"));
    write("good.fastq", kReads);
    write("bad.fastq", "@r1\nACGT\nACGT\nIIII\n");
  }

  fs::path at(const std::string& name) const { return folder_.path() / name; }
  void write(const std::string& name, const std::string& text) const { writeWholeFile(at(name), text); }
  std::string text(const std::string& name) const { return platform::pathToUtf8(at(name)); }

  // GENOSTAT for one FASTQ file of the folder.
  std::string job(const std::string& file, const std::string& name, const std::string& more = {}) const {
    return "GENOSTAT\n  /JOB FILE='" + text(file) + "' NAME='" + name + "'" + more + ".\n";
  }

  ProgramCall call(Arguments arguments, const std::string& input = {}) const {
    return {fs::absolute(GENOSTAT_BIN_DIR) / "genostat",
            std::move(arguments),
            folder_.path(),
            input,
            {{"LC_ALL", "C"}}};
  }
  ProgramResult run(const std::string& syntax, const Arguments& more = {}) const {
    write("a.syntax", syntax);
    Arguments arguments = {"run", "a.syntax", "--temp", "temp"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return runProgram(call(std::move(arguments)));
  }

  TemporaryFolder folder_;
};

// Which messages an event file holds: "q NAME", "r NAME", "e NAME (SYNTAX'S SIZE > 0)".
std::string eventsIn(const fs::path& file) {
  std::string events;
  std::istringstream lines(readWholeFile(file));
  for (std::string line; std::getline(lines, line);) {
    rapidjson::Document event;
    event.Parse(line.c_str());
    if (!event.IsObject() || !std::regex_match(event["time"].GetString(),
                                               std::regex(R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z)"))) {
      return "malformed: " + line;
    }
    const std::string name = event["jobName"].GetString();
    if (event["id"].GetInt() == 1025) {
      events += (event["started"].GetBool() ? "r " : "q ") + name + "; ";
    } else {
      events += "e " + name + (event["message"].GetStringLength() > 0 ? " with syntax; " : "; ");
    }
  }
  return events;
}

TEST_F(Console, RunsAJobToItsTables) {
  const ProgramResult result =
      run(job("good.fastq", "control", "\n  /DESCRIPTIVES VARIABLES=Total_Sequences GC"),
          {"--events", "events.jsonl", "--csv", "new/copies"});
  EXPECT_EQ(result.err, "job 'control' queued\njob 'control' running\njob 'control' finished\n");
  EXPECT_EQ(result.status, 0);
  std::size_t place = 0;
  for (const char* part : {"Summary", "Samples", "Details", "Valid:1 fastQ file(s) detected.",
                           "Total_Sequences", "Descriptive Statistics", "GC"}) {
    place = result.out.find(part, place);
    EXPECT_NE(place, std::string::npos) << part << " in\n" << result.out;
  }
  EXPECT_EQ(eventsIn(at("events.jsonl")), "q control; r control; e control with syntax; ");
  EXPECT_EQ(namesIn(at("temp")), Arguments{});
  EXPECT_EQ(namesIn(at("new") / "copies"), Arguments{"control.csv"});
  EXPECT_NE(readWholeFile(at("new") / "copies" / "control.csv").find("good"), std::string::npos);
}

TEST_F(Console, GoesOnAfterFailedCommandsAndJobs) {
  const ProgramResult result = run(job("bad.fastq", "first") + "FOO BAR.\n" + job("good.fastq", "run") +
                                       job("good.fastq", "RUN") + "GET DATA /TYPE=TXT",
                                   {"--csv", "copies"});
  EXPECT_EQ(result.status, 1);
  // Notices come as they come; each line's place among its own kind is sure.
  for (const std::string& line : {"a.syntax:3:1: error: unknown command \"FOO\"\n  FOO BAR.\n  ^~~\n" +
                                      std::string(kUnknownCommandHint) + "\n",
                                  "error: job 'first' failed: " + text("bad.fastq") + ": record 1, line 3: ",
                                  std::string("job 'RUN' finished\n"), std::string("a.syntax:8:")}) {
    EXPECT_NE(result.err.find(line), std::string::npos) << line << "in\n" << result.err;
  }
  EXPECT_EQ(result.err.find("FOO"), result.err.rfind("\"FOO\"") + 1) << "shown once";
  EXPECT_EQ(result.out.find("FOO"), std::string::npos);
  EXPECT_EQ(namesIn(at("copies")), (Arguments{"RUN_2.csv", "run.csv"}));
  EXPECT_EQ(namesIn(at("temp")), Arguments{});
}

TEST_F(Console, ReportsWhatAJobNeedsBeforeItIsQueued) {
  const std::string submit = job("good.fastq", "a");
  const std::string mark = "\n  GENOSTAT\n  ^~~~~~~~\n";
  fs::create_directory(at("home") / "strings");
  write("home/strings/global.txt", "Summary\tOverview\nno tab\n");
  const std::string launcher =
      platform::pathToUtf8(fs::path(text("home") + "/").make_preferred() /
                           ("statisticspython3" + std::string(platform::kLauncherSuffix)));
  const struct {
    std::string syntax;
    Arguments arguments;
    std::string err;
  } rows[] = {
      {submit,
       {"--home", "home"},
       platform::pathToUtf8((at("home") / "strings" / "global.txt")) +
           ":2:1: warning: a line of a string table needs a tab between key and text; it is skipped\n"
           "  no tab\n  ^~~~~~\n"
           "a.syntax:1:1: error: the analysis cannot be started: the launcher \"" +
           launcher + "\" is missing" + mark},
      {submit,
       {"--temp", "nowhere"},
       "a.syntax:1:1: error: the analysis cannot be started: the temporary folder \"" + text("nowhere") +
           "\" does not exist (--temp chooses another)" + mark},
      // The command's own errors come first, and command-line mode before all needs.
      {"GENOSTAT\n  /JOB FILE='a' /PRIMT.\n",
       {"--temp", "nowhere"},
       "a.syntax:2:18: error: unknown subcommand \"PRIMT\"\n    /JOB FILE='a' /PRIMT.\n                   "
       "^~~~~\n"
       "  expected JOB, DESCRIPTIVES, FREQUENCIES, CORRELATIONS, REGRESSION, PRINT or DELETE; did you mean "
       "PRINT?\n"},
      {submit,
       {"--command-line-mode", "--temp", "nowhere"},
       "a.syntax:1:1: error: GENOSTAT procedure is not supported in command-line mode. Please use the "
       "interactive "
       "ZORV Statistics client." +
           mark},
  };
  for (const auto& row : rows) {
    Arguments arguments = row.arguments;
    arguments.insert(arguments.end(), {"--events", "events.jsonl"});
    const ProgramResult result = run(row.syntax, arguments);
    EXPECT_EQ(result.err, row.err) << row.err;
    EXPECT_EQ(result.out, "") << row.err;
    EXPECT_EQ(result.status, 1) << row.err;
    EXPECT_EQ(readWholeFile(at("events.jsonl")), "") << row.err;
  }
}

TEST_F(Console, AnswersWrongUsage) {
  const std::string seeRun = "\nTry \"genostat run --help\".\n";
  const std::string seeAll = "\nTry \"genostat --help\".\n";
  const struct {
    Arguments arguments;
    std::string err;
  } rows[] = {
      {{"rnu", "a"}, "error: unknown subcommand \"rnu\"; did you mean run?" + seeAll},
      {{"--bogus"}, "error: unknown option \"--bogus\"" + seeAll},
      {{"good.fastq"}, "error: \"good.fastq\" is no command; did you mean genostat qc good.fastq?" + seeAll},
      {{"help", "rum"}, "error: unknown subcommand \"rum\"; did you mean run?" + seeAll},
      {{"--temp", "x", "run", "a"}, "error: unknown option \"--temp\"; did you mean run --temp?" + seeRun},
      {{"run"}, "error: FILE is missing" + seeRun},
      {{"run", "a", "--output"}, "error: --output needs a value: text|json|html" + seeRun},
      {{"run", "--tmep", "x", "a"}, "error: unknown option \"--tmep\"; did you mean --temp?" + seeRun},
      {{"run", "a", "b"}, "error: unexpected argument \"b\"" + seeRun},
      {{"run", "a", "--output", "xml"},
       "error: --output: expected text, json or html, found \"xml\"" + seeRun},
      {{"run", "good.fastq", "--to", "good.fastq"}, "error: --to names the syntax file\n"},
      {{"run", "good.fastq", "--html", "./good.fastq"}, "error: --html names the syntax file\n"},
      {{"run", "good.fastq", "--html", "a", "--to", "temp/../a"},
       "error: --to and --html name the same file\n"},
      {{"run", "missing.syntax"}, "error: cannot read \"missing.syntax\": no such file\n"},
      {{"run", "temp"}, "error: cannot read \"temp\": it is a folder\n"},
      {{"run", "good.fastq", "--strings", "no"},
       "error: the folder of string tables \"no\" does not exist\n"},
  };
  for (const auto& row : rows) {
    const ProgramResult result = runProgram(call(row.arguments));
    EXPECT_EQ(result.err, row.err);
    EXPECT_EQ(result.out, "") << row.err;
    EXPECT_EQ(result.status, 2) << row.err;
  }
  const ProgramResult none = runProgram(call({}));
  const ProgramResult help = runProgram(call({"--help"}));
  EXPECT_EQ(none.err, help.out);
  EXPECT_EQ(none.status, 2);
  EXPECT_EQ(help.status, 0);
  EXPECT_EQ(runProgram(call({"help", "run"})).out, runProgram(call({"run", "--to", "--help"})).out);
  EXPECT_TRUE(
      std::regex_match(runProgram(call({"--version"})).out,
                       std::regex("genostat \\d+\\.\\d+\\.\\d+\nLicence: MIT, the Genostat authors\n")));
}

TEST_F(Console, WritesOneJsonDocumentFromStandardInput) {
  write("table.txt", "Summary\tno\n");
  fs::create_directory(at("texts"));
  write("texts/GENOSTAT.txt",
        "Summary\t\xC3\x9C"
        "bersicht\n");
  const ProgramResult result =
      runProgram(call({"run", "-", "--temp", "temp", "--output", "json", "--strings", "texts"},
                      "FOO.\n" + job("good.fastq", "")));
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err,
            "<stdin>:1:1: error: unknown command \"FOO\"\n  FOO.\n  ^~~\n" +
                std::string(kUnknownCommandHint) +
                "\njob '(unnamed)' queued\njob '(unnamed)' running\njob '(unnamed)' finished\n" +
                result.err.substr(std::min(result.err.find("<job '(unnamed)'>"), result.err.size())));
  rapidjson::Document document;
  document.Parse(result.out.c_str());
  ASSERT_TRUE(document.IsObject()) << result.out;
  const auto& items = document["items"];
  ASSERT_GE(items.Size(), 3U);
  EXPECT_STREQ(items[0]["kind"].GetString(), "error");
  EXPECT_STREQ(items[1]["title"].GetString(),
               "\xC3\x9C"
               "bersicht");
}

TEST_F(Console, FailsWhenItsFilesCannotBeWritten) {
  write("file", "");
  const ProgramResult result =
      run(job("good.fastq", "a"), {"--events", "nowhere/events.jsonl", "--csv", "file/copies"});
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(result.err.find("error: cannot write the event file \""), std::string::npos) << result.err;
  EXPECT_NE(result.err.find("error: cannot copy the results of job 'a' to \""), std::string::npos)
      << result.err;
  EXPECT_NE(result.out.find("Summary"), std::string::npos);
  EXPECT_EQ(namesIn(at("temp")), Arguments{});
}

TEST_F(Console, WritesResultsAndReportsToFiles) {
  write("kept.html", "old");
  ProgramResult result = run("GET DATA /TYPE=TXT /FILE='table.csv' /VARIABLES=a AUTO.\nFOO.\n",
                             {"--output", "json", "--to", "results.json", "--html", "kept.html"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_THAT(readWholeFile(at("results.json")), testing::StartsWith("{\"format\":\"genostat-output\""));
  EXPECT_THAT(
      readWholeFile(at("kept.html")),
      testing::AllOf(testing::StartsWith("<!DOCTYPE html>"), testing::HasSubstr("<h1>a</h1>"),
                     testing::HasSubstr("unknown command &quot;FOO&quot;"), testing::EndsWith("</html>\n")));
  result = run(job("good.fastq", "a"), {"--to", "tables.txt"});
  EXPECT_EQ(result.out, "");
  EXPECT_THAT(readWholeFile(at("tables.txt")), testing::StartsWith("\nSummary\n+--"));
  result = run("EXECUTE.\n", {"--output", "html"});
  EXPECT_THAT(result.out, testing::StartsWith("<!DOCTYPE html>"));

  const struct {
    std::string file, reason;
  } rows[] = {{"temp", "it is a folder"}, {"no/where.html", "its folder does not exist"}};
  for (const auto& row : rows) {
    result = run("FOO.\n", {"--html", row.file});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "error: cannot write \"" + row.file + "\": " + row.reason + "\n");
  }
  EXPECT_EQ(namesIn(folder_.path()), (Arguments{"a.syntax", "bad.fastq", "good.fastq", "home", "kept.html",
                                                "results.json", "tables.txt", "temp"}));
}

TEST_F(Console, ReportsJobsThatCouldNotBeStarted) {
  if (fs::path::preferred_separator == '\\') GTEST_SKIP() << "this system starts any batch file";
  write("home/statisticspython3.sh", "no interpreter is named here");
  fs::permissions(at("home/statisticspython3.sh"), fs::perms::owner_all);
  const ProgramResult result = run(job("good.fastq", "a") + job("good.fastq", ""), {"--home", "home"});
  EXPECT_EQ(result.status, 1);
  for (const char* name : {"(unnamed)", "a"}) {
    EXPECT_THAT(result.err, testing::HasSubstr("error: job '" + std::string(name) +
                                               "' could not be started: its launcher \"" +
                                               text("home/statisticspython3.sh") + "\" did not start\n"));
  }
}

TEST_F(Console, KeepsItsOutputFromWhatALauncherWrites) {
  const fs::path launcher = at("home") / ("statisticspython3" + std::string(platform::kLauncherSuffix));
  const std::string analysis =
      '"' + platform::pathToUtf8((fs::absolute(GENOSTAT_BIN_DIR) / "genostat-analysis").make_preferred()) +
      '"';
  writeWholeFile(launcher, launcher.extension() == ".bat"
                               ? "@echo chatter\r\n@" + analysis + " %*\r\n"
                               : "#!/bin/sh\necho chatter\nexec " + analysis + " \"$@\"\n");
  fs::permissions(launcher, fs::perms::owner_all);
  const ProgramResult result = run(job("good.fastq", "a"), {"--home", "home", "--output", "json"});
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.err, testing::HasSubstr("chatter\n"));
  rapidjson::Document document;
  document.Parse(result.out.c_str());
  EXPECT_TRUE(document.IsObject()) << result.out;
}

// One job has ended, one runs and has begun its result, one waits. The running launcher's processes
// write as long as they live.
TEST_F(Console, LeavesNothingBehindOnCtrlC) {
  write("home/statisticspython3.sh",
        "#!/bin/sh\n"
        "mkdir \"$0.first\" 2>/dev/null && exec " GENOSTAT_BIN_DIR
        "/genostat-analysis \"$@\"\n"
        "csv=$(echo \"$2\" | base64 -d | sed 's/.*\"CSV_Path\":\"\\([^\"]*\\)\".*/\\1/')\n"
        "host=$(uname -n | tr -c '[:alnum:]_\\n-' _)\n"
        "echo half >\"${csv%/*}/$host-17-0.genostat-part\"; echo half >\"$csv\"\n"
        "beat() { while :; do echo . >>\"$0.beats\"; sleep 0.02; done; }\n"
        // A child, a grandchild whose parent has ended, and the launcher itself.
        "beat & (beat &); beat\n");
  fs::permissions(at("home/statisticspython3.sh"), fs::perms::owner_all);
  write("a.syntax", job("good.fastq", "one") + job("good.fastq", "two") + job("good.fastq", "three"));
  const fs::path beats = at("home/statisticspython3.sh.beats");
  const auto size = [&] {
    std::error_code missing;
    const auto bytes = fs::file_size(beats, missing);
    return missing ? 0 : bytes;
  };
  const auto result =
      runAndSignal(call({"run", "a.syntax", "--temp", "temp", "--home", "home", "--events", "events.jsonl"}),
                   Signal::Interrupt,
                   // Twice at once, as some programs pass an interrupt on.
                   [&](int sent) { return sent < 2 && size() > 4; });
  if (!result) GTEST_SKIP() << "this system has no signals to send";
  EXPECT_EQ(result->status, 130);
  EXPECT_EQ(result->out, "");
  EXPECT_THAT(result->err, testing::EndsWith("interrupted: cancelling all jobs\n"
                                             "job 'three' cancelled\njob 'two' cancelled\n"));
  EXPECT_THAT(eventsIn(at("events.jsonl")), testing::EndsWith("r two; e three; e two; "));
  EXPECT_EQ(namesIn(at("temp")), Arguments{});
  const auto last = size();
  std::this_thread::sleep_for(std::chrono::milliseconds(200));
  EXPECT_EQ(size(), last);
}

}  // namespace
}  // namespace genostat::test
