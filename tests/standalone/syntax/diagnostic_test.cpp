#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "standalone/syntax/keyword.h"
#include "tests/standalone/syntax/syntax_fixture.h"

namespace genostat::standalone::test {

namespace {

using std::string_view_literals::operator""sv;

// The text is written with the place between two bars: "NAME=|'a'| FILE".
std::string renderMarked(std::string_view marked, bool countLine) {
  const std::size_t begin = marked.find('|');
  const std::size_t end = marked.find('|', begin + 1) - 1;
  std::string text(marked);
  std::erase(text, '|');
  SourceRange range{makeSource(text), begin, end};
  if (countLine)
    range.line = static_cast<std::size_t>(
                     std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(begin), '\n')) +
                 1;
  return renderDiagnostic({Diagnostic::Severity::Error, "wrong", range, "expected A"});
}

TEST(RenderDiagnostic, ShowsTheLineAndTheCaret) {
  struct Row {
    std::string_view marked;
    std::string_view rendered;  // behind the file's name
  };
  constexpr auto kRows = std::to_array<Row>({
      {"A |B| C", "1:3: error: wrong\n  A B C\n    ^\n  expected A"},
      {"A.\r\n  B |'cd'|\r\nE", "2:5: error: wrong\n    B 'cd'\n      ^~~~\n  expected A"},
      {"||", "1:1: error: wrong\n  \n  ^\n  expected A"},
      {"A\n||", "2:1: error: wrong\n  \n  ^\n  expected A"},
      {"A||\nB", "1:2: error: wrong\n  A\n   ^\n  expected A"},
      {"A |B\nC| D", "1:3: error: wrong\n  A B\n    ^\n  expected A"},
      {"\tA\t|B|", "1:4: error: wrong\n  \tA\tB\n  \t \t^\n  expected A"},
      {"\xEF\xBB\xBF|A|", "1:1: error: wrong\n  A\n  ^\n  expected A"},
      // Two bytes and one column; three bytes and two columns; a mark without a column of its own.
      {"\xC3\xA4\xC3\xA4 |\xC3\xA4|", "1:4: error: wrong\n  \xC3\xA4\xC3\xA4 \xC3\xA4\n     ^\n  expected A"},
      {"\xE6\x97\xA5 |\xE6\x9C\xAC|",
       "1:3: error: wrong\n  \xE6\x97\xA5 \xE6\x9C\xAC\n     ^~\n  expected A"},
      {"a\xCC\x88 |B|", "1:4: error: wrong\n  a\xCC\x88 B\n    ^\n  expected A"},
      // Broken and dangerous bytes.
      {"\xFF\xFE |B|", "1:4: error: wrong\n  \xEF\xBF\xBD\xEF\xBF\xBD B\n     ^\n  expected A"},
      {"\x1B[2J|\0|"sv, "1:5: error: wrong\n  \\x1B[2J\\x00\n         ^~~~\n  expected A"},
  });
  for (const Row& row : kRows) {
    for (const bool countLine : {false, true}) {
      EXPECT_EQ(renderMarked(row.marked, countLine), "run.syntax:" + std::string(row.rendered)) << row.marked;
    }
  }
}

TEST(RenderDiagnostic, CutsALongLineAroundThePlace) {
  const std::string before(5'000'000, 'x');
  const std::string after(5'000'000, 'y');
  EXPECT_EQ(renderMarked(before + "|BAD|" + after, false),
            "run.syntax:1:5000001: error: wrong\n  \u2026" + std::string(60, 'x') + "BAD" +
                std::string(37, 'y') + "\u2026\n   " + std::string(60, ' ') + "^~~\n  expected A");
  EXPECT_EQ(quoteForMessage(before), "\"" + std::string(60, 'x') + "\u2026\"");
}

TEST(DescribeDiagnostic, CutsTheExcerptToTheTerminal) {
  struct Row {
    std::string before;
    std::string place;
    std::string after;
    std::string excerpt;
  };
  const std::string wide = "\xE6\x97\xA5";
  const Row rows[] = {
      {"0123456789", "abcdef", "", "  0123456789abcdef\n            ^~~~~~"},
      {"0123456789", "abcdefg", "", "  \u2026123456789abcdefg\n            ^~~~~~~"},
      {std::string(30, 'x'), "abc", "yyyyy", "  \u2026xxxxxxxxxabcyyyy\u2026\n            ^~~"},
      {wide + wide + wide + wide + wide, "abcd", "efg",
       "  \u2026" + wide + wide + wide + wide + "abcdefg\n           ^~~~"},
  };
  for (const Row& row : rows) {
    const SourceRange range{makeSource(row.before + row.place + row.after), row.before.size(),
                            row.before.size() + row.place.size()};
    const DiagnosticParts parts = describeDiagnostic({{}, "wrong", range, "hint"}, 20);
    EXPECT_EQ(parts.excerpt, row.excerpt);
    EXPECT_EQ(parts.message.substr(parts.message.rfind(':')), ": wrong");
    EXPECT_EQ(parts.hint, "hint");
  }
}

TEST(RenderDiagnostic, NeedsNoPlace) {
  EXPECT_EQ(renderDiagnostic({Diagnostic::Severity::Warning, "odd\x1B", {}, ""}), "warning: odd\\x1B");
}

TEST(Keyword, IsMatchedOrExplained) {
  constexpr auto kKeywords =
      std::to_array<std::string_view>({"MIN", "MINIMUM", "MAXIMUM", "MAXSIZE", "STDDEV", "CI"});
  struct Row {
    std::string_view word;
    std::string_view meaning;  // the keyword, or message and hint
  };
  constexpr auto kRows = std::to_array<Row>({
      {"min", "MIN"},
      {"mini", "MINIMUM"},
      {"Std", "STDDEV"},
      {"ci", "CI"},
      {"MAX", "ambiguous keyword \"MAX\": it may mean MAXIMUM or MAXSIZE"},
      {"MA", "ambiguous keyword \"MA\": it may mean MAXIMUM or MAXSIZE"},
      {"ST",
       "unknown keyword \"ST\": expected MIN, MINIMUM, MAXIMUM, MAXSIZE, STDDEV or CI; did you mean STDDEV?"},
      {"STDEV",
       "unknown keyword \"STDEV\": expected MIN, MINIMUM, MAXIMUM, MAXSIZE, STDDEV or CI; did you mean "
       "STDDEV?"},
      {"mniimum",
       "unknown keyword \"mniimum\": expected MIN, MINIMUM, MAXIMUM, MAXSIZE, STDDEV or CI; did you mean "
       "MINIMUM?"},
      {"STDDEVIATION",
       "unknown keyword \"STDDEVIATION\": expected MIN, MINIMUM, MAXIMUM, MAXSIZE, STDDEV or CI"},
      {"", "unknown keyword \"\": expected MIN, MINIMUM, MAXIMUM, MAXSIZE, STDDEV or CI"},
  });
  for (const Row& row : kRows) {
    const auto index = matchKeyword(row.word, kKeywords);
    const KeywordFault fault = explainKeyword(row.word, kKeywords, "keyword");
    EXPECT_EQ(index ? std::string(kKeywords[*index]) : fault.message + ": " + fault.hint, row.meaning)
        << row.word;
  }
}

}  // namespace

}  // namespace genostat::standalone::test
