// What is shown of a job that runs, as lines and as a terminal's rows.
#include <gtest/gtest.h>

#include "common/text/utf8.h"
#include "standalone/console/view/live_lines.h"
#include "standalone/console/view/progress_lines.h"
#include "tests/support/test_screen.h"

namespace genostat::standalone {
namespace {

using Lines = std::vector<std::string>;

std::string joined(const Lines& lines) {
  std::string text;
  for (const std::string& line : lines) {
    text += line + "|\n";
  }
  return text;
}

constexpr std::uint64_t kMega = 1'000'000;

TEST(ProgressLines, SayWhatIsKnownAndFit) {
  const JobProgress one = {
      1, 0, 42 * kMega, 100 * kMega, 81'920, 4, {{"s1", 42 * kMega, 100 * kMega, 81'920}}};
  JobProgress many = {24, 3, 12'100 * kMega, 40'000 * kMega, 9'999, 3'700, {}};
  for (int i = 1; i <= 5; ++i) {
    many.running.push_back({"s" + std::to_string(i), std::uint64_t(i) * kMega, 8 * kMega, 1'234'567});
  }
  const JobProgress pipe = {2, 0, 1'500'000, 0, 10, 3, {{"stdin", 1'500'000, 0, 10}}};
  const JobProgress grown = {1, 0, 120, 100, 1, 9, {{"a\x1B[2J\n\xFF", 120, 100, 1}}};
  const JobProgress slow = {2, 0, 1, 900'000 * kMega, 1, 3'600, {}};
  struct Case {
    ShownProgress shown;
    LineSpace space;
    std::string lines;
  };
  const std::vector<Case> cases = {
      {{"job", 0.9, {}, 0}, {}, ""},
      {{"", 3'723.9, {}, 1}, {}, "(unnamed)  1:02:03|\n1 more job waits|\n"},
      {{"job", 4, one, 0},
       {80, 24, true},
       "job  42 %  42 of 100 MB  81.9k reads  10 MB/s  0:06 left|\n"
       "  s1  ████████░░░░░░░░░░░░   42 %  81.9k reads|\n"},
      {{"job", 9, many, 2},
       {90, 6, false},
       "job  3 of 24 samples  30 %  12.1 of 40.0 GB  9999 reads  3.3 MB/s  2:22:12 left|\n"
       "  s1  ##..................   12 %  1.23M reads|\n"
       "  s2  #####...............   25 %  1.23M reads|\n"
       "  and 3 more samples|\n"
       "2 more jobs wait|\n"},
      {{"a job with a long name", 9, many, 0},
       {60, 3, true},
       "a job wit…long name  3 of 24 samples  30 %  2:22:12 left|\n"
       "  and 5 more samples|\n"},
      {{"a job with a long name", 9, one, 0}, {24, 2, false}, "a j..ame  42 %|\n"},
      {{"job", 9, one, 0}, {1, 9, true}, "j…b|\n …1|\n"},
      {{"j", 3, pipe, 0}, {}, "j  0 of 2 samples  1.5 MB  10 reads  0.5 MB/s|\n  stdin  1.5 MB  10 reads|\n"},
      {{"j", 9, grown, 0},
       {46, 9, false},
       "j  100 %  0.0 of 0.0 MB  1 read  0.0 MB/s|\n"
       "  a\\x1..J\\n\uFFFD  ##########  100 %  1 read|\n"},
      {{"j", 9, slow, 0}, {}, "j  0 of 2 samples  0 %  0.0 of 900.0 GB  1 read  0.0 MB/s|\n"},
  };
  for (const Case& row : cases) {
    const Lines lines = progressLines(row.shown, row.space);
    EXPECT_EQ(joined(lines), row.lines);
    for (const std::string& line : lines) {
      EXPECT_TRUE(row.space.width < 4 || common::displayWidth(line) < row.space.width) << line;
    }
  }
}

TEST(LiveLines, LeaveNothingBehind) {
  test::Screen screen(20, 6);
  platform::Terminal terminal{true, 20, 6, true, true, true};
  LiveLines live([&] { return terminal; }, [&](std::string_view bytes) { screen.feed(bytes); });
  const auto above = [&](const std::string& line) { live.writeAbove([&] { screen.feed(line + "\r\n"); }); };
  above("job queued");
  live.draw({"one", "two", "three"});
  EXPECT_EQ(screen.text(), "job queued\n\none\ntwo\nthree\n");
  // Scrolls.
  above("notice 1");
  above("notice 2");
  EXPECT_EQ(screen.text(), "notice 1\nnotice 2\n\none\ntwo\nthree\n");
  live.draw({"1"});
  EXPECT_EQ(screen.text(), "notice 1\nnotice 2\n\n1\n");
  // Of another program.
  screen.feed("trouble\r\n");
  live.draw({"short", "a line too wide for this terminal"});
  EXPECT_EQ(screen.text(), "notice 1\nnotice 2\ntrouble\n\nshort\na line too wide forl\n");
  live.draw(Lines(9, "x"));
  EXPECT_EQ(screen.text(), "\nx\nx\nx\nx\nx\n");
  terminal.isForeground = false;
  live.draw({"y"});
  above("other job");
  EXPECT_EQ(screen.text(), "other job\nx\nx\nx\nx\nx\n");
  terminal.isForeground = true;
  live.draw({"z"});
  EXPECT_EQ(screen.text(), "other job\n\nz\n");
  live.close();
  live.draw({"late"});
  above("interrupted");
  EXPECT_EQ(screen.text(), "other job\ninterrupted\n");
}

}  // namespace
}  // namespace genostat::standalone
