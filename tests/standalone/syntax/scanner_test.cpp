#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <sstream>

#include "tests/standalone/syntax/syntax_fixture.h"

namespace genostat::standalone::test {

namespace {

using std::string_view_literals::operator""sv;

// Words as typed, numbers as #value, literals as <text>, the end as "." or, without a period,
// "$"; commands are separated by " | ", and an error is "!OFFSET MESSAGE".
std::string dump(const ScanResult& result) {
  std::ostringstream out;
  for (const ScanResult::Item& item : result.items) {
    if (&item != &result.items.front()) out << " | ";
    if (item.error) out << '!' << item.error->range->begin << ' ' << item.error->message;
    for (const Token& token : item.command.tokens) {
      using enum Token::Kind;
      const bool period = token.range.begin < token.range.end;
      if (token.kind == Number) out << '#' << token.number << ' ';
      if (token.kind == String) out << '<' << token.text << "> ";
      if (token.kind == Word || token.kind == Symbol) out << token.text << ' ';
      if (token.kind == End) out << (period ? "." : "$");
    }
  }
  return out.str();
}

TEST(CommandScanner, CutsTextsIntoTokens) {
  struct Row {
    std::string_view text;
    std::string_view dumped;
  };
  constexpr auto kRows = std::to_array<Row>({
      {"", ""},
      {" \n\n .\n.", ""},
      // Ends of commands.
      {"CACHE.\nEXECUTE.", "CACHE . | EXECUTE ."},
      {"\xEF\xBB\xBF* note.\r\nCACHE. \t\r\nEXECUTE.\r\n", "CACHE . | EXECUTE ."},
      {"CACHE\n\nEXECUTE\n \t\r\nGET\nDATA", "CACHE $ | EXECUTE $ | GET DATA $"},
      {"CACHE. EXECUTE.", "CACHE . EXECUTE ."},
      {"A\n.\nB .", "A . | B ."},
      {"NAME a.b.\nNAME x..\nNAME y. .", "NAME a.b . | NAME x . . | NAME y . ."},
      // Numbers.
      {"PIN(.05) POUT(.10)", "PIN ( #0.05 ) POUT ( #0.1 ) $"},
      {"P=95.0 95. 5\nC 95.\n/B", "P = #95 #95 #5 C #95 . | / B $"},
      {"S=-1 +2 (-3) 5-3 a -4 x-1", "S = #-1 #2 ( #-3 ) #5 - #3 a #-4 x - #1 $"},
      {"1e2 1E-2 2e 3D 1.2.3 3e-x ..5 -.5", "#100 #0.01 2e 3D 1.2.3 3e - x ..5 #-0.5 $"},
      {"CI 1e999.\nNEXT.", "!3 this number is too large or too small | NEXT ."},
      // Literals.
      {"'it''s' \"a\"\"b\" '\"' \"'\" '' 'a'\"b\"", "<it's> <a\"b> <\"> <'> <> <a> <b> $"},
      {"/QUALIFIER='\"'\n/DELIMITERS=\",\"", "/ QUALIFIER = <\"> / DELIMITERS = <,> $"},
      {"A 'open\n/B 'c'.\nNEXT.", "!2 this quote is not closed on its line | NEXT ."},
      {"F='a.\n' b.", "!2 this quote is not closed on its line | !6 this quote is not closed on its line"},
      {"A 'open\n\nNEXT \"",
       "!2 this quote is not closed on its line | !14 this quote is not closed on its line"},
      // Comments.
      {"* don't run this\n  nor 'this.\nCACHE.", "CACHE ."},
      {"* ends at a blank line\n \nCACHE * 2.", "CACHE * #2 ."},
      {"  *.\nCACHE.\n* to the end", "CACHE ."},
      {"A /* B.\n\n C */ D. /* E */\nF '/*'.", "A D . | F </*> ."},
      {"A /* B */\n\nC. /* D\n */ E.", "A $ | C . | E ."},
      {"A\n/* a comment's line is not blank */\nB/**/.", "A B ."},
      {"A.\n/* open.\nB. /* open",
       "A . | !3 this comment is not closed | B . | !15 this comment is not closed"},
      // Anything else.
      {"\xC3\xA4\xFF_1@#$ {} \0 \x01"sv, "\xC3\xA4\xFF_1@#$ { } \0 \x01 $"sv},
      {"a\rb", "a b $"},
  });
  for (const Row& row : kRows)
    EXPECT_EQ(dump(scanCommands(makeSource(row.text))), row.dumped) << row.text;
}

TEST(CommandScanner, KeepsTheTextOfACommand) {
  const SourcePtr source = makeSource("* x.\n\n A 'b' /* c */\n  d. \nE f \n\n.");
  const ScanResult result = scanCommands(source);
  ASSERT_EQ(result.items.size(), 2U);
  EXPECT_EQ(result.items[0].command.text(), "A 'b' /* c */\n  d.");
  EXPECT_EQ(result.items[1].command.text(), "E f");
}

// Returns what is broken of all that holds for every text, however damaged; nothing if all is well.
std::string brokenInvariant(const SourcePtr& source) {
  const std::string& text = source->text;
  std::size_t end = 0;
  CommandScanner scanner(source);
  while (const auto item = scanner.next()) {
    if (item->error) {
      if (!item->error->range || item->error->range->begin < end) return "errors out of order";
      end = item->error->range->begin;
      continue;
    }
    if (item->command.tokens.size() < 2) return "an empty command";
    for (const Token& token : item->command.tokens) {
      const SourceRange& range = token.range;
      const bool last = &token == &item->command.tokens.back();
      if ((token.kind == Token::Kind::End) != last) return "End in the wrong place";
      if (range.begin < end || range.end < range.begin || range.end > text.size())
        return "ranges out of order";
      if (range.begin == range.end && !last) return "an empty token";
      const bool verbatim = token.kind != Token::Kind::String && token.kind != Token::Kind::End;
      if (verbatim && token.text != text.substr(range.begin, range.end - range.begin)) return "a wrong text";
      end = range.end;
    }
  }
  return {};
}

TEST(CommandScanner, HoldsItsInvariantsOnRandomTexts) {
  constexpr auto kPieces = std::to_array<std::string_view>(
      {"\n", "\n", ".\n", " \r\n",    ".",        " ",     "/",       "*",   "/*",
       "*/", "'",  "\"",  "GENOSTAT", "/JOB",     "NAME=", "-",       "1e-", "9.5",
       "(",  ")",  ",",   "\xC3\xA4", "\xE2\x82", "\0"sv,  "\x1B[2J", "\t"});
  std::mt19937 random(20240607);
  for (int round = 0; round < 3000; ++round) {
    std::string text;
    for (std::size_t i = random() % 60; i > 0; --i) {
      const std::size_t pick = random() % (kPieces.size() + 4);
      text += pick < kPieces.size() ? std::string(kPieces[pick])
                                    : std::string(1, static_cast<char>(random() % 256));
    }
    const SourcePtr source = makeSource(text);
    ASSERT_EQ(brokenInvariant(source), "") << testing::PrintToString(text);
    // Lines are counted while scanning; a diagnostic that counts anew finds the same.
    for (const ScanResult::Item& item : scanCommands(source).items) {
      if (item.error) {
        ASSERT_LT(renderDiagnostic(*item.error).size(), 2000U);
      }
      for (const Token& token : item.command.tokens) {
        const auto begin = static_cast<std::ptrdiff_t>(token.range.begin);
        const auto lineFeeds = std::count(text.begin(), text.begin() + begin, '\n');
        ASSERT_EQ(token.range.line, static_cast<std::size_t>(lineFeeds) + 1) << testing::PrintToString(text);
      }
    }
  }
}

// Texts that make a scanner look ahead or back again and again. Anything quadratic takes many minutes,
// which CTest's time limit ends.
TEST(CommandScanner, GetsThroughLongTexts) {
  for (const std::string_view piece : {"("sv, "'"sv, "'\n\n"sv, "."sv, ". "sv, ". /**/"sv, "/*"sv, "/*\n\n"sv,
                                       "a."sv, "9"sv, "1e-"sv, "* \n"sv, "\n"sv, " "sv, "\0"sv, "a.\n"sv}) {
    std::string text = "A ";
    while (text.size() < 600'000)
      text += piece;
    EXPECT_EQ(brokenInvariant(makeSource(text)), "") << piece;
  }
}

}  // namespace

}  // namespace genostat::standalone::test
