#include <gtest/gtest.h>

#include <array>
#include <random>
#include <sstream>

#include "host/language.h"
#include "host/syntax_parser.h"
#include "standalone/services/current.h"
#include "tests/standalone/syntax/syntax_fixture.h"

namespace genostat::standalone {

namespace {

const Command* runningCommand = nullptr;
std::vector<std::string> reported;

}  // namespace

// In place of a session.
const Command* currentCommand() {
  return runningCommand;
}
void reportDiagnostic(const Diagnostic& diagnostic) {
  reported.push_back(renderDiagnostic(diagnostic));
}

namespace {

using test::scanOne;
using enum UPSpecTypes::ParamSpec;

struct SubcommandRow {
  const char* name;
  const char* params;  // NAME:ParamSpec, then the allowed values or qualifiers
};

constexpr auto kSubcommands = std::to_array<SubcommandRow>({
    {"JOB", "NAME:4 FILE:6 FOLDER:4 ADAPTERS:27:NONE:ILLUMINA:NEXTERA"},
    {"DESCRIPTIVES", "VARIABLES:5 SKEWNESS:0 KURTOSIS:0"},
    {"FREQUENCIES", "VARIABLES:5 NTILES:9 PERCENTILES:8 HISTOGRAM:0 QUARTILES:0"},
    {"CORRELATIONS", "VARIABLES:5 PEARSON:5:TRUE:FALSE SPEARMAN:0 KENDALL:0 TWOTAIL:0 ONETAIL:0"},
    {"REGRESSION", "DEPENDENT:5 INDEPENDENT:5 METHOD:5:ENTER:STEPWISE:BACKWARD:FORWARD CI:7"},
    {"PRINT", "SAMPLE_COUNT:9 VARIABLE_COUNT:9 MESSAGE:9"},
    {"DELETE", "FILE:4"},
});

ParamDescriptor describeParam(const std::string& described) {
  std::istringstream parts(described);
  std::string name, specText, value;
  std::getline(std::getline(parts, name, ':'), specText, ':');
  const auto spec = static_cast<UPSpecTypes::ParamSpec>(std::stoi(specText));
  ParamDescriptor param(name, spec, spec == PARAM_NAMES, spec != PARAM_SWITCH, UPSpecTypes::BRACKETS_DEFAULT);
  while (std::getline(parts, value, ':')) {
    spec == PARAM_NAMES ? param.addStringValue(value) : param.addQualifDesc(value);
  }
  if (spec == PARAM_KEYWORD_QUALIFIED) {
    param.addQualifDesc({"CUSTOM", PARAM_QUALIFIER_VALUE, false, true, UPSpecTypes::BRACKETS_DEFAULT});
  }
  return param;
}

CommandDescriptor describeCommand() {
  CommandDescriptor command("GENOSTAT");
  for (const SubcommandRow& row : kSubcommands) {
    SubComDescriptor subcommand(row.name, UPSpecTypes::SUBCOM_PARAMS, false, false);
    std::istringstream params(row.params);
    for (std::string param; params >> param;)
      subcommand.addParamDesc(describeParam(param));
    command.addSubComDesc(subcommand);
  }
  return command;
}

// The value as every getter that succeeds delivers it.
std::string dumpValue(const ParamObj& param) {
  std::ostringstream out;
  std::string text;
  std::vector<std::string> texts;
  std::vector<double> numbers;
  double number = 0;
  std::int32_t integer = 0;
  ParamObj qualifier;
  const auto list = [&out](const auto& values) {
    for (const auto& value : values)
      out << (&value == &values.front() ? "[" : ",") << value;
    out << "]";
  };
  if (param.getLiteral(text)) out << "'" << text << "'";
  if (param.getStringGeneric(text)) out << text;
  if (param.getLiteralList(texts) || param.getStringList(texts)) list(texts);
  if (param.getNumberList(numbers)) list(numbers);
  if (param.getNumberValue(number)) out << number;
  if (param.getIntegerValue(integer)) out << "i" << integer;
  if (param.getStringAndQual(qualifier)) {
    out << qualifier.getParamName();
    if (qualifier.getUpStringGeneric(text)) out << "(" << text << ")";
  }
  return out.str();
}

// What the parser makes of `text`: the values it found, or the error as shown.
std::string parse(const std::string& text) {
  const Command scanned = scanOne(text);
  runningCommand = &scanned;
  reported.clear();
  const CommandDescriptor command = describeCommand();
  ZORV_TokenSequence tokens(true);
  CommandSpec spec;
  const int result = UniversalParser(&tokens, spec, command).getCommandSpecifications();
  EXPECT_EQ(reported.size(), result == 0 ? 0U : 1U) << text;
  std::string dumped = result == 0 ? "" : reported.at(0);
  for (const SubComDescriptor& subcommand : command.subcommands()) {
    const SubComObj* given = spec.getSubComObj(subcommand.name());
    if (given) dumped += "/" + subcommand.name();
    for (const ParamDescriptor& param : subcommand.params()) {
      const ParamObj* value = given ? given->getParamObj(param.name()) : nullptr;
      if (value) dumped += " " + value->getParamName() + "=" + dumpValue(*value);
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
      {"GENOSTAT\n    /JOB FILE='' NAME='run_1' ADAPTERS=NONE\n    /PRINT SAMPLE_COUNT=-1 MESSAGE=205.",
       "/JOB NAME='run_1' FILE=[] ADAPTERS=NONE/PRINT SAMPLE_COUNT=-1i-1 MESSAGE=205i205"},
      {"GENOSTAT\n/DELETE FILE='C:\\Temp\\it''s.csv'.", "/DELETE FILE='C:\\Temp\\it's.csv'"},
      // In any case, abbreviated, with and without "=", commas and slash.
      {"Genostat Job nam 'a' fil='x' \"y\", 'z' adap ill /des",
       "/JOB NAME='a' FILE=[x,y,z] ADAPTERS=ILLUMINA/DESCRIPTIVES"},
      {"GENOSTAT /DESC VAR=GC, Median_Length b KURT skew",
       "/DESCRIPTIVES VARIABLES=GC[GC,Median_Length,b] SKEWNESS= KURTOSIS="},
      {"GENOSTAT /FRE HIST PER=5 95.5,.5 NTILES 1e1 VARIABLES a.b",
       "/FREQUENCIES VARIABLES=a.b[a.b] NTILES=10i10 PERCENTILES=[5,95.5,0.5] HISTOGRAM="},
      {"GENOSTAT /CORR PEARSON=false TWO", "/CORRELATIONS PEARSON=FALSE[FALSE] TWOTAIL="},
      {"GENOSTAT /REG DEP=y IND=x z METHOD=step CI=90.5",
       "/REGRESSION DEPENDENT=y[y] INDEPENDENT=x[x,z] METHOD=STEPWISE[STEPWISE] CI=90.5"},
      // A qualifier's value: bare, quoted, empty, missing, a number.
      {"GENOSTAT /JOB ADAPTERS=CUSTOM(acgt)", "/JOB ADAPTERS=CUSTOM(ACGT)"},
      {"GENOSTAT /JOB ADAPTERS=cus ( 'ac''gt' ) NAME=''", "/JOB NAME='' ADAPTERS=CUSTOM(AC'GT)"},
      {"GENOSTAT /JOB ADAPTERS=CUSTOM()", "/JOB ADAPTERS=CUSTOM()"},
      {"GENOSTAT /JOB ADAPTERS=CUSTOM NAME='a'", "/JOB NAME='a' ADAPTERS=CUSTOM"},
      {"GENOSTAT /JOB ADAPTERS=CUSTOM(12)", "/JOB ADAPTERS=CUSTOM(12)"},
  });
  for (const Row& row : kRows)
    EXPECT_EQ(parse(row.text), row.dumped) << row.text;
}

TEST(UniversalParser, SaysWhatIsWrongAndWhere) {
  struct Row {
    const char* text;   // the place between bars
    const char* error;  // message and hint
  };
  constexpr auto kRows = std::to_array<Row>({
      // Keywords.
      {"GENOSTAT\n\t/|JBO| NAME='a'.",
       "unknown subcommand \"JBO\"; expected JOB, DESCRIPTIVES, FREQUENCIES, CORRELATIONS, REGRESSION, PRINT "
       "or "
       "DELETE; did you mean JOB?"},
      {"GENOSTAT /JOB |NAMES|='a'.",
       "unknown JOB keyword \"NAMES\"; expected NAME, FILE, FOLDER or ADAPTERS; did you mean NAME?"},
      {"GENOSTAT /JOB NAME='a' |PRINT|.",
       "unknown JOB keyword \"PRINT\"; a subcommand begins with a slash: /PRINT"},
      {"GENOSTAT /REG DEP=a |INDEPENDENTS|=b.",
       "unknown REGRESSION keyword \"INDEPENDENTS\"; expected DEPENDENT, INDEPENDENT, METHOD or CI; did you "
       "mean "
       "INDEPENDENT?"},
      {"GENOSTAT /DESC VAR=a |5|.", "expected VARIABLES, SKEWNESS or KURTOSIS, found the number 5"},
      {"|FREQUENCIES| /JOB.", "expected the command GENOSTAT, found \"FREQUENCIES\""},
      {"GENOSTAT /DELETE FILE='a' /|.|",
       "expected JOB, DESCRIPTIVES, FREQUENCIES, CORRELATIONS, REGRESSION, PRINT or "
       "DELETE, found the end of the command"},
      // Twice.
      {"GENOSTAT /JOB NAM='a' /PRINT /|job|.", "the subcommand JOB is given twice"},
      {"GENOSTAT /JOB NAME='a' FILE='b' |nam|='c'.", "NAME is given twice in JOB"},
      // Values of the wrong kind.
      {"GENOSTAT /DESC SKEWNESS|=|TRUE.", "SKEWNESS takes no value"},
      {"GENOSTAT /DESC KURT|(|1).", "KURTOSIS takes no value"},
      {"GENOSTAT /JOB NAME=|b|.", "expected a text for NAME in quotes, found \"b\""},
      {"GENOSTAT /JOB NAME=|\u201Cb\u201D|.",
       "expected a text for NAME in quotes, found \"\u201Cb\u201D\"; texts need straight quotes, ' "
       "or \""},
      {"GENOSTAT /JOB|.| GENOSTAT /JOB.",
       "expected NAME, FILE, FOLDER or ADAPTERS, found \".\"; a period ends a command only at the end of a "
       "line"},
      {"GENOSTAT /JOB NAME||", "expected a text for NAME in quotes, found the end of the command"},
      {"GENOSTAT /JOB FILE='a', |/|PRINT.", "expected a text for FILE in quotes, found \"/\""},
      {"GENOSTAT /DESC VAR= |kurt|.", "expected a name for VARIABLES, found \"kurt\""},
      {"GENOSTAT /DESC VAR=|'GC'|.", "expected a name for VARIABLES, found the text \"GC\""},
      {"GENOSTAT /CORR PEARSON=|maybe|.", "unknown PEARSON value \"maybe\"; expected TRUE or FALSE"},
      {"GENOSTAT /FREQ NTILES=|4.5|.", "expected a whole number for NTILES, found the number 4.5"},
      {"GENOSTAT /PRINT MESSAGE=|2147483648|.",
       "the number 2147483648 is out of range; expected a number from -2147483648 to 2147483647"},
      {"GENOSTAT /REG CI=|high|.", "expected a number for CI, found \"high\""},
      // Qualifiers.
      {"GENOSTAT /JOB ADAPTERS=|ILUMINA|.",
       "unknown ADAPTERS value \"ILUMINA\"; expected NONE, ILLUMINA, NEXTERA or "
       "CUSTOM; did you mean ILLUMINA?"},
      {"GENOSTAT /JOB ADAPTERS=NONE|(|a).", "NONE takes no value"},
      {"GENOSTAT /JOB ADAPTERS=CUSTOM(a |b|).", "expected \")\", found \"b\""},
      {"GENOSTAT /JOB ADAPTERS=CUSTOM(|(|a)).", "expected a value for CUSTOM, found \"(\""},
  });
  for (const Row& row : kRows) {
    std::string text = row.text;
    const std::size_t begin = text.find('|');
    const std::size_t end = text.find('|', begin + 1) - 1;
    std::erase(text, '|');
    std::string message = row.error;
    const std::size_t hint = message.find("; ");
    Diagnostic expected{{}, message.substr(0, hint), SourceRange{test::makeSource(text), begin, end}, {}};
    if (hint != std::string::npos) expected.hint = message.substr(hint + 2);
    EXPECT_EQ(parse(text), renderDiagnostic(expected)) << row.text;
  }
}

TEST(UniversalParser, RefusesAnEmptySequence) {
  reported.clear();
  ZORV_TokenSequence tokens(false);
  CommandSpec spec;
  EXPECT_NE(UniversalParser(&tokens, spec, describeCommand()).getCommandSpecifications(), 0);
  EXPECT_EQ(reported, std::vector<std::string>{"error: GENOSTAT was called while no command runs"});
}

// parse() checks that a command is either taken or refused with one error.
TEST(UniversalParser, SurvivesRandomAndHugeCommands) {
  constexpr auto kPieces = std::to_array<const char*>(
      {"/JOB ",   "/DESC ", "/FREQ ", "/REG ", "VAR ",    "NAME ",  "FILE", "ADAPTERS", "CUSTOM",
       "NTILES ", "PER",    "KURT ",  "DEP",   "METHOD ", "ENTER ", "=",    "=",        "(",
       ")",       ",",      "'x' ",   "5 ",    "-7e9 ",   "gc ",    "/",    "+"});
  std::mt19937 random(7);
  int taken = 0;
  for (int round = 0; round < 3000; ++round) {
    std::string text = "GENOSTAT ";
    for (std::size_t i = random() % 9; i > 0; --i)
      text += kPieces[random() % kPieces.size()];
    taken += parse(text).find("error") == std::string::npos ? 1 : 0;
  }
  EXPECT_GT(taken, 300);

  std::string list = "v";
  for (int i = 0; i < 200'000; ++i)
    list += ",v";
  EXPECT_EQ(parse("GENOSTAT /DESC VAR=" + list), "/DESCRIPTIVES VARIABLES=v[" + list + "]");
  EXPECT_NE(parse("GENOSTAT /JOB ADAPTERS=CUSTOM" + std::string(500'000, '(')).find("for CUSTOM"),
            std::string::npos);
}

TEST(ParserMessage, PointsAtTheCommand) {
  ParserMessage message;
  message.SetProcedureTitle("GENOSTAT");
  const Command command = scanOne("  GENOSTAT /JOB FILE='a'.");
  reported.clear();
  runningCommand = &command;
  message.GenericError("Input file not found: a", nullptr, nullptr, nullptr, nullptr, nullptr);
  message.GenericError("Bad", "x", nullptr, "y", nullptr, nullptr);
  runningCommand = nullptr;
  message.GenericError("Bad", nullptr, nullptr, nullptr, nullptr, nullptr);
  const std::string line = "\n    GENOSTAT /JOB FILE='a'.\n    ^~~~~~~~";
  EXPECT_EQ(reported,
            (std::vector<std::string>{"run.syntax:1:3: error: Input file not found: a" + line,
                                      "run.syntax:1:3: error: Bad: x, y" + line, "error: GENOSTAT: Bad"}));
}

}  // namespace

}  // namespace genostat::standalone
