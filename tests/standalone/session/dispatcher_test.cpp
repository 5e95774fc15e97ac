#include "standalone/session/dispatcher.h"

#include <gtest/gtest.h>

namespace genostat::test {
namespace {

using namespace genostat::standalone;

TEST(Dispatcher, FindsCommandsByOneOrTwoWords) {
  constexpr CommandHandler kHandlers[] = {{"GET DATA", nullptr},
                                          {"SET", nullptr},
                                          {"DATASET NAME", nullptr},
                                          {"DATASET ACTIVATE", nullptr},
                                          {"GENOSTAT", nullptr}};
  const struct {
    const char* command;
    const char* answer;
  } rows[] = {
      {"SET DECIMAL DOT.", "SET"},
      {"get data /TYPE=TXT.", "GET DATA"},
      {"Dat Nam x.", "DATASET NAME"},
      {"GENO /PRINT.", "GENOSTAT"},
      {"  GENSTAT /JOB.",
       "t:1:3: error: unknown command \"GENSTAT\"\n    GENSTAT /JOB.\n    ^~~~~~~\n"
       "  expected DATASET, GENOSTAT, GET or SET; did you mean GENOSTAT?"},
      {"DATASET NAEM x.",
       "t:1:9: error: unknown DATASET command \"NAEM\"\n  DATASET NAEM x.\n          ^~~~\n"
       "  expected ACTIVATE or NAME; did you mean NAME?"},
      {"GET /FILE.",
       "t:1:5: error: expected a GET command, found \"/\"\n  GET /FILE.\n      ^\n  expected DATA"},
      {"GET.",
       "t:1:4: error: expected a GET command, found the end of the command\n  GET.\n     ^\n  expected DATA"},
      {"12 monkeys.",
       "t:1:1: error: expected a command, found the number 12\n  12 monkeys.\n  ^~\n"
       "  expected DATASET, GENOSTAT, GET or SET"},
  };
  for (const auto& row : rows) {
    const auto scanned = scanCommands(std::make_shared<const SourceText>(SourceText{"t", row.command}));
    std::string answer;
    try {
      answer = findHandler(kHandlers, scanned.items.at(0).command).name;
    } catch (const CommandError& error) {
      answer = renderDiagnostic(error.diagnostic());
    }
    EXPECT_EQ(answer, row.answer) << row.command;
  }
}

}  // namespace
}  // namespace genostat::test
