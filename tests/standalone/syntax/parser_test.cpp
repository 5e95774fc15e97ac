#include <gtest/gtest.h>

#include <array>
#include <random>
#include <sstream>

#include "host/language.h"
#include "host/syntax_parser.h"
#include "tests/standalone/syntax/syntax_fixture.h"

namespace genostat::standalone::test {

namespace {

using namespace UPSpecTypes;

struct ParamRow {
  const char* subcommand;
  const char* name;
  ParamSpec spec;
  std::vector<const char*> values;  // allowed values, or qualifiers
};

const std::vector<ParamRow>& paramRows() {
  static const std::vector<ParamRow> kRows = {
      {"JOB", "NAME", PARAM_LITERAL, {}},
      {"JOB", "FILE", PARAM_LITERAL_LIST, {}},
      {"JOB", "FOLDER", PARAM_LITERAL, {}},
      {"JOB", "ADAPTERS", PARAM_KEYWORD_QUALIFIED, {"NONE", "ILLUMINA", "NEXTERA"}},
      {"DESCRIPTIVES", "VARIABLES", PARAM_NAMES, {}},
      {"DESCRIPTIVES", "SKEWNESS", PARAM_SWITCH, {}},
      {"DESCRIPTIVES", "KURTOSIS", PARAM_SWITCH, {}},
      {"FREQUENCIES", "VARIABLES", PARAM_NAMES, {}},
      {"FREQUENCIES", "NTILES", PARAM_INTEGER, {}},
      {"FREQUENCIES", "PERCENTILES", PARAM_NUMBER_LIST, {}},
      {"FREQUENCIES", "HISTOGRAM", PARAM_SWITCH, {}},
      {"CORRELATIONS", "VARIABLES", PARAM_NAMES, {}},
      {"CORRELATIONS", "PEARSON", PARAM_NAMES, {"TRUE", "FALSE"}},
      {"REGRESSION", "DEPENDENT", PARAM_NAMES, {}},
      {"REGRESSION", "INDEPENDENT", PARAM_NAMES, {}},
      {"REGRESSION", "METHOD", PARAM_NAMES, {"ENTER", "STEPWISE", "BACKWARD", "FORWARD"}},
      {"REGRESSION", "CI", PARAM_NUMBER, {}},
      {"PRINT", "SAMPLE_COUNT", PARAM_INTEGER, {}},
      {"PRINT", "VARIABLE_COUNT", PARAM_INTEGER, {}},
      {"PRINT", "MESSAGE", PARAM_INTEGER, {}},
      {"DELETE", "FILE", PARAM_LITERAL, {}},
  };
  return kRows;
}

constexpr std::array kSubcommands = {"JOB",        "DESCRIPTIVES", "FREQUENCIES", "CORRELATIONS",
                                     "REGRESSION", "PRINT",        "DELETE"};

CommandDescriptor describeCommand() {
  CommandDescriptor command("GENOSTAT");
  for (const char* name : kSubcommands) {
    SubComDescriptor subcommand(name, SUBCOM_PARAMS, false, false);
    for (const ParamRow& row : paramRows()) {
      if (std::string_view(row.subcommand) != name) continue;
      ParamDescriptor param(row.name, row.spec, false, row.spec != PARAM_SWITCH, BRACKETS_DEFAULT);
      for (const char* value : row.values) {
        row.spec == PARAM_KEYWORD_QUALIFIED ? param.addQualifDesc(std::string(value))
                                            : param.addStringValue(value);
      }
      if (row.spec == PARAM_KEYWORD_QUALIFIED) {
        param.addQualifDesc({"CUSTOM", PARAM_QUALIFIER_VALUE, false, true, BRACKETS_DEFAULT});
      }
      subcommand.addParamDesc(param);
    }
    command.addSubComDesc(subcommand);
  }
  return command;
}

std::string join(const std::vector<std::string>& texts) {
  std::string joined;
  for (const std::string& text : texts)
    joined += (joined.empty() ? "" : ",") + text;
  return joined;
}

// The value as its getter delivers it.
std::string dumpValue(const ParamObj& param, ParamSpec spec) {
  std::ostringstream out;
  std::string text;
  std::vector<std::string> texts;
  std::vector<double> numbers;
  double number = 0;
  std::int32_t integer = 0;
  ParamObj qualifier;
  if (param.getLiteral(text)) out << "'" << text << "'";
  if (param.getLiteralList(texts)) out << "[" << join(texts) << "]";
  if (param.getStringList(texts)) out << "{" << join(texts) << "}";
  if (spec == PARAM_NAMES && (!param.getStringGeneric(text) || text != texts.front())) out << "?";
  if (spec == PARAM_NUMBER && param.getNumberValue(number)) out << number;
  if (param.getNumberList(numbers)) {
    for (const double value : numbers)
      out << value << ";";
  }
  if (param.getIntegerValue(integer)) out << integer;
  if (param.getStringAndQual(qualifier)) {
    out << qualifier.getParamName();
    if (qualifier.getUpStringGeneric(text)) out << "(" << text << ")";
  }
  return out.str();
}

// What the parser makes of `text`: the values it found, or the error as shown.
std::string parse(const std::string& text) {
  const Command scanned = scanOne(text);
  RunningCommand running(scanned);
  const CommandDescriptor command = describeCommand();
  ZORV_TokenSequence tokens(true);
  CommandSpec spec;
  const int result = UniversalParser(&tokens, spec, command).getCommandSpecifications();
  EXPECT_EQ(running.reported.size(), result == 0 ? 0U : 1U) << text;
  std::string dumped = result == 0 ? "" : running.reported.at(0);
  for (const char* name : kSubcommands) {
    const SubComObj* subcommand = spec.getSubComObj(name);
    if (!subcommand) continue;
    dumped += "/" + std::string(name);
    for (const ParamRow& row : paramRows()) {
      if (std::string_view(row.subcommand) != name) continue;
      if (const ParamObj* param = subcommand->getParamObj(row.name)) {
        dumped += " " + param->getParamName() + dumpValue(*param, row.spec);
      }
    }
  }
  return dumped;
}

TEST(UniversalParser, ReadsWhatTheDescriptionAllows) {
  struct Row {
    const char* text;
    const char* dumped;
  };
  constexpr auto kRows = std::to_array<Row>({
      {"GENOSTAT.", ""},
      {"geno job.", "/JOB"},
      {"GENOSTAT\n    /JOB FILE='' NAME='run_1' ADAPTERS=NONE\n"
       "    /PRINT SAMPLE_COUNT=-1 VARIABLE_COUNT=4 MESSAGE=205.",
       "/JOB NAME'run_1' FILE[] ADAPTERSNONE/PRINT SAMPLE_COUNT-1 VARIABLE_COUNT4 MESSAGE205"},
      {"GENOSTAT\n/JOB FILE='' NAME='x' ADAPTERS=NONE\n/DELETE FILE='C:\\Temp\\it''s.csv'.",
       "/JOB NAME'x' FILE[] ADAPTERSNONE/DELETE FILE'C:\\Temp\\it's.csv'"},
      // In any case, abbreviated, with and without "=", commas and slash.
      {"Genostat Job nam 'a' fil='x' \"y\", 'z' adap ill /des",
       "/JOB NAME'a' FILE[x,y,z] ADAPTERSILLUMINA/DESCRIPTIVES"},
      {"GENOSTAT /DESC VAR=GC, median_sequence_length Sample KURT skew",
       "/DESCRIPTIVES VARIABLES{GC,median_sequence_length,Sample} SKEWNESS KURTOSIS"},
      {"GENOSTAT /FRE HIST PER=5 95.5,.5 NTILES 1e1 VARIABLES a.b",
       "/FREQUENCIES VARIABLES{a.b} NTILES10 PERCENTILES5;95.5;0.5; HISTOGRAM"},
      {"GENOSTAT /CORR VAR=a PEARSON=false", "/CORRELATIONS VARIABLES{a} PEARSON{FALSE}"},
      {"GENOSTAT /REG DEP=y IND=x z METHOD=step CI=90.5",
       "/REGRESSION DEPENDENT{y} INDEPENDENT{x,z} METHOD{STEPWISE} CI90.5"},
      // A qualifier's value: bare, quoted, empty, missing, not beginning with a letter.
      {"GENOSTAT /JOB ADAPTERS=CUSTOM(acgt)", "/JOB ADAPTERSCUSTOM(ACGT)"},
      {"GENOSTAT /JOB ADAPTERS=cus ( 'ac''gt' ) NAME=''", "/JOB NAME'' ADAPTERSCUSTOM(AC'GT)"},
      {"GENOSTAT /JOB ADAPTERS=CUSTOM()", "/JOB ADAPTERSCUSTOM()"},
      {"GENOSTAT /JOB ADAPTERS=CUSTOM NAME='a'", "/JOB NAME'a' ADAPTERSCUSTOM"},
      {"GENOSTAT /JOB ADAPTERS=CUSTOM(12)", "/JOB ADAPTERSCUSTOM(12)"},
  });
  for (const Row& row : kRows) {
    EXPECT_EQ(parse(row.text), row.dumped) << row.text;
  }
}

TEST(UniversalParser, SaysWhatIsWrongAndWhere) {
  struct Row {
    const char* text;
    const char* message;  // behind the file's name, the line left out
  };
  constexpr auto kRows = std::to_array<Row>({
      // Keywords.
      {"GENOSTAT\n\t/JBO NAME='a'.",
       "2:3: error: unknown subcommand \"JBO\"|\t ^~~|expected JOB, DESCRIPTIVES, FREQUENCIES, CORRELATIONS, "
       "REGRESSION, "
       "PRINT or DELETE; did you mean JOB?"},
      {"GENOSTAT /JOB NAMES='a'.",
       "1:15: error: unknown JOB keyword \"NAMES\"|              ^~~~~|expected NAME, FILE, FOLDER or "
       "ADAPTERS; did you "
       "mean NAME?"},
      {"GENOSTAT /JOB NAME='a' PRINT.",
       "1:24: error: unknown JOB keyword \"PRINT\"|                       ^~~~~|a subcommand begins with a "
       "slash: "
       "/PRINT"},
      {"GENOSTAT /REG DEP=a INDEPENDENTS=b.",
       "1:21: error: unknown REGRESSION keyword \"INDEPENDENTS\"|                    ^~~~~~~~~~~~|expected "
       "DEPENDENT, "
       "INDEPENDENT, METHOD or CI; did you mean INDEPENDENT?"},
      {"GENOSTAT /FREQUENCIES VARIABLES=a 5.",
       "1:35: error: expected VARIABLES, NTILES, PERCENTILES or HISTOGRAM, found the number 5|               "
       "          "
       "         ^"},
      {"FREQUENCIES /JOB.", "1:1: error: expected the command GENOSTAT, found \"FREQUENCIES\"|^~~~~~~~~~~"},
      {"GENOSTAT /JOB /.",
       "1:16: error: expected JOB, DESCRIPTIVES, FREQUENCIES, CORRELATIONS, REGRESSION, PRINT or DELETE, "
       "found the end "
       "of the command|               ^"},
      // Twice.
      {"GENOSTAT /JOB NAM='a' /PRINT /job.",
       "1:31: error: the subcommand JOB is given twice|                              ^~~"},
      {"GENOSTAT /JOB NAME='a' FILE='b' nam='c'.",
       "1:33: error: NAME is given twice in JOB|                                ^~~"},
      // Values of the wrong kind.
      {"GENOSTAT /DESC SKEWNESS=TRUE.", "1:24: error: SKEWNESS takes no value|                       ^"},
      {"GENOSTAT /DESC KURT(1).", "1:20: error: KURTOSIS takes no value|                   ^"},
      {"GENOSTAT /JOB NAME=\xC3\xA4.",
       "1:20: error: expected a text for NAME in quotes, found \"\xC3\xA4\"|                   ^"},
      {"GENOSTAT /JOB NAME",
       "1:19: error: expected a text for NAME in quotes, found the end of the command|           "
       "       ^"},
      {"GENOSTAT /JOB FILE='a', /PRINT.",
       "1:25: error: expected a text for FILE in quotes, found \"/\"|                        ^"},
      {"GENOSTAT /DESC VAR= kurt.",
       "1:21: error: expected a name for VARIABLES, found \"kurt\"|                    ^~~~"},
      {"GENOSTAT /DESC VAR='GC'.",
       "1:20: error: expected a name for VARIABLES, found the text \"GC\"|                   ^~~~"},
      {"GENOSTAT /CORR PEARSON=maybe.",
       "1:24: error: unknown PEARSON value \"maybe\"|                       ^~~~~|expected TRUE or FALSE"},
      {"GENOSTAT /FREQ NTILES=4.5.",
       "1:23: error: expected a whole number for NTILES, found the number 4.5|                      ^~~"},
      {"GENOSTAT /PRINT MESSAGE=2147483648.",
       "1:25: error: the number 2147483648 is out of range|                        ^~~~~~~~~~|expected a "
       "number from "
       "-2147483648 to 2147483647"},
      {"GENOSTAT /REG CI=high.",
       "1:18: error: expected a number for CI, found \"high\"|                 ^~~~"},
      // Qualifiers.
      {"GENOSTAT /JOB ADAPTERS=ILUMINA.",
       "1:24: error: unknown ADAPTERS value \"ILUMINA\"|                       ^~~~~~~|expected NONE, "
       "ILLUMINA, NEXTERA "
       "or CUSTOM; did you mean ILLUMINA?"},
      {"GENOSTAT /JOB ADAPTERS=NONE(a).", "1:28: error: NONE takes no value|                           ^"},
      {"GENOSTAT /JOB ADAPTERS=CUSTOM(a b).",
       "1:33: error: expected \")\", found \"b\"|                                ^"},
      {"GENOSTAT /JOB ADAPTERS=CUSTOM((a)).",
       "1:31: error: expected a value for CUSTOM, found \"(\"|                              ^"},
  });
  for (const Row& row : kRows) {
    std::string rendered = parse(row.text);
    // Leave out the quoted line: the rows repeat the texts often enough.
    const std::size_t lineBegin = rendered.find('\n');
    const std::size_t lineEnd = rendered.find('\n', lineBegin + 1);
    ASSERT_NE(lineEnd, std::string::npos) << row.text << ": " << rendered;
    rendered.erase(lineBegin, lineEnd - lineBegin);
    for (std::size_t i = 0; (i = rendered.find("\n  ", i)) != std::string::npos;)
      rendered.replace(i, 3, "|");
    EXPECT_EQ(rendered, "run.syntax:" + std::string(row.message)) << row.text;
  }
}

TEST(UniversalParser, RefusesAnEmptySequence) {
  const Command command = scanOne("GENOSTAT.");
  RunningCommand running(command);
  ZORV_TokenSequence tokens(false);
  CommandSpec spec;
  EXPECT_NE(UniversalParser(&tokens, spec, describeCommand()).getCommandSpecifications(), 0);
  EXPECT_EQ(running.reported, std::vector<std::string>{"error: GENOSTAT was called while no command runs"});
}

// Any sequence of the command's own pieces is either taken or refused with one error, and a
// refused one leaves nothing behind (parse() checks the former).
TEST(UniversalParser, SurvivesRandomCommands) {
  constexpr auto kPieces = std::to_array<const char*>(
      {"/JOB ",   "/DESC ", "/FREQ ", "/REG ", "VAR ",    "NAME ",  "FILE", "ADAPTERS", "CUSTOM",
       "NTILES ", "PER",    "KURT ",  "DEP",   "METHOD ", "ENTER ", "=",    "=",        "(",
       ")",       ",",      "'x' ",   "5 ",    "-7e9 ",   "gc ",    "/",    "*"});
  std::mt19937 random(7);
  int taken = 0;
  for (int round = 0; round < 3000; ++round) {
    std::string text = "GENOSTAT ";
    for (std::size_t i = random() % 9; i > 0; --i)
      text += kPieces[random() % kPieces.size()];
    if (text.find("/*") != std::string::npos) continue;
    const std::string parsed = parse(text);
    taken += parsed.find("error") == std::string::npos ? 1 : 0;
  }
  EXPECT_GT(taken, 300);
}

TEST(UniversalParser, ReadsALongListInOnePass) {
  std::string text = "GENOSTAT /DESC VAR=";
  for (int i = 0; i < 200'000; ++i)
    text += "v,";
  EXPECT_EQ(parse(text + "w").size(), std::string("/DESCRIPTIVES VARIABLES{}").size() + 400'001);
  EXPECT_NE(parse("GENOSTAT /JOB ADAPTERS=CUSTOM" + std::string(500'000, '(')).find("expected a value"),
            std::string::npos);
}

TEST(ParserMessage, PointsAtTheCommand) {
  ParserMessage message;
  message.SetCommandName("GENOSTAT");
  message.SetProcedureTitle("GENOSTAT");
  const Command command = scanOne("  GENOSTAT /JOB FILE='a'.");
  RunningCommand running(command);
  message.GenericError("Input file not found: a", nullptr, nullptr, nullptr, nullptr, nullptr);
  message.GenericError("Bad", "x", nullptr, "y", nullptr, nullptr);
  const std::string line = "\n    GENOSTAT /JOB FILE='a'.\n    ^~~~~~~~";
  EXPECT_EQ(running.reported,
            (std::vector<std::string>{"run.syntax:1:3: error: Input file not found: a" + line,
                                      "run.syntax:1:3: error: Bad: x, y" + line}));
}

}  // namespace

}  // namespace genostat::standalone::test
