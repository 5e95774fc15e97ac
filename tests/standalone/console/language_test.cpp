// What the program says in other languages. In the pseudo-language every text that is looked up has accents:
// a plain word is either part of what the user gave or was not looked up.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <regex>
#include <set>

#include "tests/support/run_program.h"
#include "tests/support/temporary_folder.h"

namespace genostat::test {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using Words = std::set<std::string>;

constexpr const char* kFailures =
    "FOO.\nGET.\nGET DATA /TYPE=TXT /FILE='gone.csv' /VARIABLES=a AUTO.\n"
    "GET DATA /TYPE=TXT /FILE='ragged.csv' /FIRSTCASE=2 /VARIABLES=a F8.2 b A2 c AUTO.\n"
    "GET DATA /TYPE=XML.\nDATASET CLOSE nowhere.\nDATASET NAME.\nCACHE now.\nSET DECIMAL "
    "SEMICOLON.\nRESTORE.\n"
    "DESCRIPTIVES a d.\nDESCRIPTIVES a b /STATISTICS=MODE.\nDESCRIPTIVES /VARIABLES=b.\nDESCRIPTIVES a 'b.\n"
    "FREQUENCIES a b /NTILES=1.\nFREQUENCIES a b /STATISTICS=ALL /HISTOGRAM NORMAL /FORMAT=LIMIT(1).\n"
    "CORRELATIONS a c /PRINT=ALL.\nCORRELATIONS a c /STATISTICS=ALL /MISSING=LISTWISE.\n"
    "NONPAR CORR a c /PRINT=BOTH.\nREGRESSION /METHOD=ENTER a.\nREGRESSION /DEPENDENT=a /METHOD=ENTER c a.\n"
    "REGRESSION /DEPENDENT=a /METHOD=ENTER c /STATISTICS=ALL.\nREGRESSION /DEPENDENT=c /METHOD=STEPWISE a.\n"
    "REGRESSION /DEPENDENT=a /METHOD=ENTER c /CRITERIA=PIN(2).\n"
    "GENOSTAT.\nGENOSTAT /JOB FILE='gone.fq' /CORRELATION.\nGENOSTAT /JOB FILE='gone.fq' /PRINT "
    "MESSAGE='x'.\n"
    "GENOSTAT /JOB NAME='lost' FILE='gone.fq'.\n/* open";

// Names of members in JSON, and values that are names themselves.
const std::regex kMembers(
    R"re("(type|kind|format|language|source|procedure)":"[^"]*"|"[A-Za-z]+":(true|false)?|null|"verdicts":\[[^}]*)re");

constexpr const char* kShellInput =
    "help\nhelp cancel\nhelp output\njobs\ndatasets\ncancel x\nshow y\noutput q r\nrun\nfoo\nhelp bar\nshow "
    "1 2 3\n"
    "GET DATA /TYPE=TXT /FILE='ragged.csv' /VARIABLES=a F8.2 b A2.\nDATASET NAME data.\nshow\ndatasets\n"
    "output html page.html\nquit now\n";

Words wordsOf(const std::string& text) {
  static const std::regex kWord("[A-Za-z_][A-Za-z_0-9]+");
  return {std::sregex_token_iterator(text.begin(), text.end(), kWord), std::sregex_token_iterator()};
}

// What a page shows: without its scripts, its style and its marks.
std::string shownOn(std::string page) {
  for (const std::string name : {"script", "style"}) {
    for (std::size_t begin = 0; (begin = page.find("<" + name)) != std::string::npos;) {
      page.erase(begin, page.find("</" + name + ">", begin) - begin);
      page.erase(page.find("</" + name + ">"), name.size() + 3);
    }
  }
  page = std::regex_replace(page, std::regex("<wbr>"), "");
  return std::regex_replace(page, std::regex("<[^>]*>|&[a-z]+;"), " ");
}

class SpokenLanguage : public testing::Test {
 protected:
  SpokenLanguage() {
    fs::create_directory(folder_.path() / "temp");
    fs::create_directory(folder_.path() / "examples");
    fs::copy(fs::path(GENOSTAT_SOURCE_DIR) / "examples", folder_.path() / "examples",
             fs::copy_options::recursive | fs::copy_options::overwrite_existing);
  }

  ProgramResult run(std::vector<std::string> arguments, std::map<std::string, std::string> environment = {},
                    const std::string& input = {}) const {
    environment.try_emplace("COLUMNS", "200");
    environment.try_emplace("LC_ALL", "C.UTF-8");
    return runProgram({fs::absolute(GENOSTAT_BIN_DIR) / "genostat", std::move(arguments), folder_.path(),
                       input, std::move(environment)});
  }

  TemporaryFolder folder_;
};

TEST_F(SpokenLanguage, LooksUpEveryText) {
  writeWholeFile(folder_.path() / "failures.syntax", kFailures);
  writeWholeFile(folder_.path() / "ragged.csv", "a,b,c\n1,x\n2,xyz,3,4\nx,,5\n3,y,5.5\n4,z,7\n");
  writeWholeFile(folder_.path() / "empty.fq", "");
  // What the user gave, symbols of statistics, and what the analysis says itself.
  const Words given = [] {
    Words words = wordsOf(std::string(kFailures) + " " + kShellInput +
                          " df df1 df2 xyz xy job failures stdin all json my run_1 text wait qc shell echo "
                          "Genomic_analysis_job_1");
    words.merge(wordsOf("no FASTQ files were given"));
    for (const char* name : {"cohort.syntax", "quality_control.syntax"}) {
      words.merge(wordsOf(readWholeFile(fs::path(GENOSTAT_SOURCE_DIR) / "examples" / name)));
    }
    return words;
  }();
  const struct {
    std::vector<std::string> arguments;
    std::string input;
  } rows[] = {
      {{"run", "examples/cohort.syntax", "--output", "json", "--html", "page.html"}, {}},
      {{"run", "failures.syntax", "--html", "page.html"}, {}},
      {{"shell", "--html", "page.html"}, kShellInput},
      {{"qc", "examples/cohort", "--correlations", "GC qc_score", "--spearman"}, {}},
      {{"qc", "examples/cohort", "--output", "json", "--html", "page.html"}, {}},
      {{"qc", "gone.fq", "empty.fq", "temp"}, {}},
      {{"qc", "examples/control.fastq", "--regression", "GC = qc_score"}, {}},
      {{"qc", "examples/control.fastq", "--frequencies", "nothing"}, {}},
      {{"--help"}, {}},
      {{"qc", "--help"}, {}},
      {{"run", "--help"}, {}},
      {{"shell", "--help"}, {}},
  };
  for (const auto& row : rows) {
    std::vector<std::string> arguments = row.arguments;
    fs::remove(folder_.path() / "page.html");
    const bool help = arguments.back() == "--help";
    arguments.insert(arguments.end(), {"--language", "pseudo"});
    if (!help) arguments.insert(arguments.end(), {"--temp", "temp"});
    if (!help && arguments.front() != "qc") arguments.insert(arguments.end(), {"--csv", "kept"});
    ProgramResult result = run(arguments, {}, row.input);
    // Options and examples.
    if (help)
      result.out =
          std::regex_replace(result.out, std::regex("--?[a-z-]+|[a-z]+([|][a-zA-Z]+)+|  genostat .*"), "");
    Words said = wordsOf(result.err + std::regex_replace(result.out, kMembers, "") +
                         shownOn(readWholeFile(folder_.path() / "page.html")));
    Words known = given;
    known.merge(wordsOf(testing::PrintToString(row.arguments)));
    known.merge(wordsOf(folder_.path().generic_string() + "/temp"));
    for (const std::string& name : namesIn(folder_.path() / "kept")) {
      known.merge(wordsOf(readWholeFile(folder_.path() / "kept" / name)));
    }
    // Keywords and symbols are the same in all languages.
    std::erase_if(said, [&](const std::string& word) {
      return known.contains(word) || std::ranges::none_of(word, [](char c) { return c >= 'a' && c <= 'z'; });
    });
    EXPECT_THAT(said, testing::IsEmpty()) << testing::PrintToString(arguments);
  }
}

TEST_F(SpokenLanguage, IsGermanWhereTheUserSpeaksIt) {
  const ProgramResult result = run({"run", "examples/quality_control.syntax", "--temp", "temp", "--to",
                                    "results.json", "--output", "json", "--html", "page.html"},
                                   {{"LANGUAGE", ""}, {"LC_ALL", "de_AT.UTF-8"}});
  EXPECT_EQ(result.err,
            "Job 'quality_control' eingereiht\nJob 'quality_control' läuft\nJob 'quality_control' beendet\n");
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(readWholeFile(folder_.path() / "results.json"),
              testing::AllOf(HasSubstr(R"("language":"de")"), HasSubstr(R"("title":"Deskriptive Statistik")"),
                             HasSubstr("Gültig: 2 FASTQ-Datei(en) gefunden.")));
  EXPECT_THAT(readWholeFile(folder_.path() / "page.html"),
              testing::AllOf(HasSubstr(R"(<html lang="de">)"), HasSubstr(R"("Copy":"Kopieren")"),
                             HasSubstr(">Standardabweichung<")));
}

TEST_F(SpokenLanguage, IsWhatAnOptionSaysOrWhatTheUserAdds) {
  fs::create_directories(folder_.path() / "mine" / "eo");
  writeWholeFile(folder_.path() / "mine" / "eo" / "client.txt",
                 "cannot read {1}: {2}\tne eblas legi {1}: {2}\nerror: {1}\teraro: {1}\n");
  EXPECT_EQ(run({"run", "gone", "--language", "de"}).err,
            "Fehler: \"gone\" kann nicht gelesen werden: die Datei gibt es nicht\n");
  EXPECT_EQ(run({"run", "gone", "--strings=mine", "--language=eo"}).err,
            "eraro: ne eblas legi \"gone\": no such file\n");
  const ProgramResult unknown = run({"run", "gone", "--language", "tlh"});
  EXPECT_EQ(unknown.status, 2);
  EXPECT_THAT(unknown.err, HasSubstr("there is no language \"tlh\"; expected one of: de, en, pseudo"));
}

}  // namespace
}  // namespace genostat::test
