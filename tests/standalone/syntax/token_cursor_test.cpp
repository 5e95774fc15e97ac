#include "standalone/syntax/token_cursor.h"

#include <gtest/gtest.h>

#include <array>

#include "tests/standalone/syntax/syntax_fixture.h"

namespace genostat::standalone::test {

namespace {

constexpr auto kSubcommands = std::to_array<std::string_view>({"TYPE", "FILE", "FIRSTCASE", "MAP"});

// A small command, read the way the host's commands are: GET DATA [/]TYPE=TXT /FILE='..' /FIRSTCASE=n /MAP.
std::string readGetData(std::string_view text) {
  const Command command = scanOne(text);
  TokenCursor cursor(command);
  std::string read;
  try {
    if (!cursor.acceptKeyword("GET") || !cursor.acceptKeyword("DATA")) cursor.failExpected("GET DATA");
    while (const auto subcommand = cursor.nextSubcommand(kSubcommands)) {
      read += std::string(kSubcommands[*subcommand]) + ":";
      if (*subcommand == 0) read += cursor.expectName("a type");
      if (*subcommand == 1) read += cursor.expectString("a file name");
      if (*subcommand == 2) read += std::to_string(cursor.expectInteger("a whole number for FIRSTCASE"));
      read += cursor.atSubcommandEnd() ? " " : "? ";
    }
    cursor.expectEnd();
  } catch (const CommandError& error) {
    read += renderDiagnostic(error.diagnostic());
    read.erase(std::min(read.find('\n'), read.size()));
  }
  return read;
}

TEST(TokenCursor, WalksACommand) {
  struct Row {
    std::string_view text;
    std::string_view read;
  };
  constexpr auto kRows = std::to_array<Row>({
      {"GET DATA /TYPE=TXT /FILE=\"a b\" /FIRSTCASE=2 /MAP.", "TYPE:TXT FILE:a b FIRSTCASE:2 MAP: "},
      {"get dat typ txt\n/first -1", "TYPE:txt FIRSTCASE:-1 "},
      {"GET DATA /FILE",
       "FILE:run.syntax:1:15: error: expected a file name in quotes, found the end of the command"},
      {"GET.", "run.syntax:1:4: error: expected GET DATA, found the end of the command"},
      {"GET DATA /MAP x /MAP.",
       "MAP:? run.syntax:1:15: error: expected \"/\" or the end of the command, found \"x\""},
      {"GET DATA /MAP /FIL3.", "MAP: run.syntax:1:16: error: unknown subcommand \"FIL3\""},
      {"GET DATA /FIRSTCASE=1.5.",
       "FIRSTCASE:run.syntax:1:21: error: expected a whole number for FIRSTCASE, found the number 1.5"},
  });
  for (const Row& row : kRows)
    EXPECT_EQ(readGetData(row.text), row.read) << row.text;
}

}  // namespace

}  // namespace genostat::standalone::test
