// What genostat shell makes of the lines that are typed.
#include <gtest/gtest.h>

#include <cmath>

#include "standalone/console/shell/completion.h"
#include "standalone/console/shell/help.h"
#include "standalone/console/shell/input.h"
#include "standalone/console/shell/tables.h"
#include "standalone/console/shell/words.h"
#include "standalone/procedures/commands.h"
#include "standalone/session/session.h"
#include "tests/support/run_program.h"
#include "tests/support/temporary_folder.h"

namespace genostat::test {
namespace {

namespace fs = std::filesystem;
using namespace genostat::standalone;

TEST(ShellInput, EndsCommandsWhereTheirSyntaxDoes) {
  // Lines, separated by "|"; the command ends with the last one and not before.
  for (const std::string lines :
       {"EXECUTE.", "EXECUTE|.", "EXECUTE|", "DESCRIPTIVES a|  b.  ", "EXECUTE. /* why */",
        "* a remark, isn't it|going on.", "/* one|two. */ EXECUTE.", "EXECUTE /* a|b */.",
        "GET DATA /FILE='a.", "GET /FILE='a'.b'|c.", "SET DECIMAL=DOT|  /* no end.|*/.", "x 1.5|y."}) {
    ShellInput input;
    std::string rest = lines + "|";
    for (std::size_t number = 7; !rest.empty(); ++number) {
      const std::size_t end = rest.find('|');
      const std::string line = rest.substr(0, end);
      rest.erase(0, end + 1);
      EXPECT_EQ(input.add(line, number), rest.empty()) << lines << ": " << line;
    }
    EXPECT_EQ(input.firstLine(), 7u);
  }
}

TEST(ShellWord, IsToldFromCommands) {
  const std::vector<std::string_view> commands = {"DATASET NAME", "DESCRIPTIVES", "SET", "CACHE", "GENOSTAT"};
  const struct {
    const char* line;
    const char* meaning;  // E, C, U, or the shell word, or ~ and the one that is nearest
    const char* parts;
  } rows[] = {
      {"", "E", ""},
      {" . ", "E", ""},
      {"jobs", "jobs", "jobs|"},
      {"  JOBS . ", "jobs", "JOBS|"},
      {"exit.", "quit", "exit|"},
      {"dat", "C", "dat|"},
      {"datasets", "datasets", "datasets|"},
      {"cac", "C", "cac|"},
      {"GENOSTAT/JOB", "C", "GENOSTAT/JOB|"},
      {"* jobs", "C", "*|jobs|"},
      {"/* jobs */", "C", "/*|jobs|*/|"},
      {"jbos", "~jobs", "jbos|"},
      {"xyzzy 1", "U", "xyzzy|1|"},
      {"show run_1 5.", "show", "show|run_1|5|"},
      {"output html 'it''s mine.html'.", "output", "output|html|it's mine.html|"},
      {"run \"a b.", "run", "run|a b|"},
      {"cancel v1.2.", "cancel", "cancel|v1.2|"},
      {"cancel ''", "cancel", "cancel||"},
  };
  for (const auto& row : rows) {
    const FirstWord first = classifyFirstWord(row.line, commands);
    const std::string name(nameOf(first.verb));
    const std::string meaning = first.kind == FirstWord::Kind::Empty     ? "E"
                                : first.kind == FirstWord::Kind::Command ? "C"
                                : first.kind == FirstWord::Kind::Unknown ? "U"
                                : first.kind == FirstWord::Kind::Shell   ? name
                                                                         : "~" + name;
    EXPECT_EQ(meaning, row.meaning) << row.line;
    std::string parts;
    for (const ShellArgument& part : splitShellLine(row.line)) {
      parts += part.text + "|";
    }
    EXPECT_EQ(parts, row.parts) << row.line;
  }
}

class Quiet : public standalone::SessionView {
 public:
  void showNotice(const std::string&) override { ++said; }
  void showDiagnostic(const standalone::Diagnostic&) override { ++said; }
  int said = 0;
};

// With the real parsers, the module's included.
class ShellCompletion : public testing::Test {
 protected:
  ShellCompletion() {
    fs::create_directory(folder_.path() / "runs");
    for (const char* name : {"one file.fastq", "it's.fastq", "rune.csv", ".hidden"}) {
      writeWholeFile(folder_.path() / name, "name,GC\na,1\n");
    }
    fs::current_path(folder_.path());
    standalone::SessionOptions options;
    options.moduleFolder = fs::absolute(GENOSTAT_BIN_DIR);
    options.folders = {folder_.path(), options.moduleFolder, folder_.path(), {}};
    session_.emplace(options, standalone::procedureCommands(), view_, output_);
    sources_.commands = session_->commands().names();
    sources_.jobs = {"run_1", "run_2"};
    sources_.datasets = {"cohort"};
    sources_.variables = {"name", "GC"};
    sources_.expectedAfter = [this](const std::string& text) {
      return session_->commands().expectedAfter(text);
    };
  }
  ~ShellCompletion() override { fs::current_path(fs::path(GENOSTAT_SOURCE_DIR)); }

  // The line with what may stand in place of its end, in brackets.
  std::string complete(const std::string& text) const {
    const std::size_t line = text.rfind('\n') + 1;
    const auto completion =
        completeShellLine(sources_, text.substr(0, line), text.substr(line), text.size() - line);
    if (completion.candidates.empty()) return "nothing";
    std::string result;
    for (const std::string& candidate : completion.candidates) {
      result += (result.empty() ? "" : " ") + candidate;
    }
    const std::string ending = completion.candidates.size() == 1 ? completion.ending : "";
    return text.substr(line, completion.begin) + "[" + result + "]" + ending;
  }

  void run(const std::string& syntax) {
    session_->run(std::make_shared<const standalone::SourceText>(standalone::SourceText{"test", syntax}));
  }

  TemporaryFolder folder_;
  Quiet view_;
  standalone::OutputDocument output_;
  std::optional<standalone::Session> session_;
  CompletionSources sources_;
};

TEST_F(ShellCompletion, OffersWhatTheParsersTake) {
  EXPECT_EQ(complete("REGRESSION /CRI"), "REGRESSION /[CRITERIA]");
  run("GET DATA /TYPE=TXT /FILE='rune.csv' /FIRSTCASE=2 /DELIMITERS=',' /VARIABLES=name A9 GC AUTO.\n"
      "DATASET NAME cohort.\n");
  const int said = view_.said;
  const std::size_t shown = output_.items().size();
  const struct {
    const char* text;
    const char* completed;
  } rows[] = {
      {"desc", "[descriptives] "},
      {"Gen", "[GENOSTAT] "},
      {"da", "[dataset datasets]"},
      {"DATASET A", "DATASET [ACTIVATE]"},
      {"dataset activate ", "dataset activate [cohort]"},
      {"DESCRIPTIVES n", "DESCRIPTIVES [name] "},
      {"DESCRIPTIVES g", "DESCRIPTIVES [GC] "},
      {"DESCRIPTIVES GC\n  /st", "  /[statistics]"},
      {"DESCRIPTIVES GC /STATISTICS=ME", "DESCRIPTIVES GC /STATISTICS=[MEAN]"},
      {"DESCRIPTIVES GC /STATISTICS=MEAN SE", "DESCRIPTIVES GC /STATISTICS=MEAN [SEMEAN]"},
      {"DESCRIPTIVES nope /ST", "nothing"},
      {"CORRELATIONS GC W", "CORRELATIONS GC [WITH] "},
      {"NONPAR ", "NONPAR [CORR]"},
      {"REGRESSION /DEPENDENT=GC /METHOD=S", "REGRESSION /DEPENDENT=GC /METHOD=[STEPWISE]"},
      {"REGRESSION /CRITERIA=", "REGRESSION /CRITERIA=[PIN POUT TOLERANCE]"},
      {"REGRESSION /RESIDUALS=NORMPROB(", "REGRESSION /RESIDUALS=NORMPROB([ZRESID]"},
      {"GET DATA /TYPE=", "GET DATA /TYPE=[TXT]"},
      {"SET DEC", "SET [DECIMAL]"},
      // The module's grammar.
      {"GENOSTAT /J", "GENOSTAT /[JOB]"},
      {"GENOSTAT /JOB FI", "GENOSTAT /JOB [FILE]"},
      {"GENOSTAT /JOB FOLDER='x' ADAPTERS=",
       "GENOSTAT /JOB FOLDER='x' ADAPTERS=[CUSTOM ILLUMINA NEXTERA NONE]"},
      {"GENOSTAT /REGRESSION METHOD=s", "GENOSTAT /REGRESSION METHOD=[stepwise]"},
      {"GENOSTAT /DESCRIPTIVES VARIABLES=GC qc_", "GENOSTAT /DESCRIPTIVES VARIABLES=GC [qc_score] "},
      {"GENOSTAT /DESCRIPTIVES VARIABLES=GC sk", "GENOSTAT /DESCRIPTIVES VARIABLES=GC [skewness] "},
      // Names of files.
      {"GENOSTAT /JOB FILE='o", "GENOSTAT /JOB FILE='[one file.fastq]'"},
      {"GENOSTAT /JOB FILE='it", "GENOSTAT /JOB FILE='[it''s.fastq]'"},
      {"GENOSTAT /JOB FOLDER=\"ru", "GENOSTAT /JOB FOLDER=\"[rune.csv runs/]"},
      {"GENOSTAT /JOB FOLDER='.h", "GENOSTAT /JOB FOLDER='[.hidden]'"},
      {"GENOSTAT /JOB FOLDER='nowhere/", "nothing"},
      // Shell words.
      {"can", "[cancel] "},
      {"cancel r", "cancel [run_1 run_2]"},
      {"cancel a", "cancel [all]"},
      {"show ", "show [GC cohort name]"},
      {"show cohort ", "nothing"},
      {"output h", "output [html] "},
      {"output html rune", "output html [rune.csv] "},
      {"run o", "run ['one file.fastq]'"},
      {"help reg", "help [regression]"},
      {"jobs ", "nothing"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(complete(row.text), row.completed) << row.text;
  }
  // Asking leaves nothing behind.
  EXPECT_EQ(view_.said, said);
  EXPECT_EQ(output_.items().size(), shown);
  ASSERT_NE(session_->commands().datasets().active(), nullptr);
  EXPECT_EQ(session_->commands().datasets().active()->caseCount, 1u);
  EXPECT_EQ(complete("DESCRIPTIVES GC /MISSING=L"), "DESCRIPTIVES GC /MISSING=[LISTWISE]");
}

TEST_F(ShellCompletion, HelpKnowsEveryCommandAndItsWords) {
  for (const std::string_view command : session_->commands().names()) {
    EXPECT_NE(helpOn(command).find("\n\n  " + std::string(command)), std::string::npos) << command;
  }
  for (const ShellWord& word : shellWords()) {
    EXPECT_FALSE(helpOn(word.name).empty()) << word.name;
  }
  EXPECT_EQ(helpOn("nonsense"), "");
  EXPECT_EQ(helpOn("desc"), helpOn("DESCRIPTIVES"));
}

TEST(CandidateList, FitsTheTerminal) {
  const std::vector<std::string> names = {"runs/eins", "runs/übung/", "runs/d\x1B[2J"};
  EXPECT_EQ(candidateList(names, 80), "eins      übung/    d\\x1B[2J\n");
  EXPECT_EQ(candidateList(names, 19), "eins      d\\x1B[2J\nübung/\n");
  EXPECT_EQ(candidateList(names, 18), "eins\nübung/\nd\\x1B[2J\n");
  const std::string many = candidateList(std::vector<std::string>(500, "x"), 80);
  EXPECT_EQ(many.substr(many.size() - 13), "and 380 more\n");
}

TEST(ShellTables, ShowJobsAndCases) {
  const std::chrono::steady_clock::time_point now{std::chrono::hours(9)};
  standalone::JobProgress progress;
  progress.samples = 24;
  progress.finished = 3;
  progress.bytesDone = 1;
  progress.bytesTotal = 3;
  const auto jobs =
      jobsTable({{"a", true, now - std::chrono::seconds(187)}, {"b", false, now}}, progress, now);
  const auto cell = [](const standalone::PivotTable& table, std::size_t row, std::size_t column) {
    return std::get<std::string>(table.cells.at(row).at(column).value);
  };
  EXPECT_EQ(cell(jobs, 0, 1), "3:07");
  EXPECT_EQ(cell(jobs, 0, 2), "3 of 24 samples, 33 %");
  EXPECT_EQ(cell(jobs, 1, 1) + cell(jobs, 1, 2), "0:00");

  standalone::Dataset dataset;
  dataset.caseCount = 3;
  dataset.columns = {{"name", standalone::Column::Type::String, 0, {}, {"x", "y", "z"}},
                     {"GC", standalone::Column::Type::Numeric, 1, {1, NAN, 3}, {}}};
  const auto cases = casesTable(dataset, nullptr, 2);
  EXPECT_EQ(cases.rows.size(), 2u);
  EXPECT_EQ(cell(cases, 1, 0), "y");
  EXPECT_EQ(cases.cells[1][1].value.index(), 0u);  // missing
  EXPECT_EQ(cases.footnotes, std::vector<std::string>{"the first 2 of 3 cases"});
  EXPECT_EQ(casesTable(dataset, &dataset.columns[1], 9).cells.at(2).size(), 1u);
  EXPECT_TRUE(casesTable(dataset, nullptr, 9).footnotes.empty());
}

}  // namespace
}  // namespace genostat::test
