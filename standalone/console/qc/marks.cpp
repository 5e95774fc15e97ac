#include "standalone/console/qc/marks.h"

#include <array>

namespace genostat::standalone {

namespace {

struct Mark {
  std::string_view ascii;
  std::string_view unicode;
  std::string_view colour;
};

// Indexed by Verdict.
constexpr std::array<Mark, 4> kMarks = {{
    {"-", "-", "\x1B[2m"},
    {".", "\u2713", "\x1B[32m"},
    {"!", "!", "\x1B[33m"},
    {"x", "\u2717", "\x1B[31m"},
}};
static_assert(static_cast<std::size_t>(Verdict::Fail) + 1 == kMarks.size());

}  // namespace

std::string_view markOf(Verdict verdict, bool unicode) {
  const Mark& mark = kMarks[static_cast<std::size_t>(verdict)];
  return unicode ? mark.unicode : mark.ascii;
}

std::string paintedMark(Verdict verdict, const TextStyle& style) {
  std::string mark(markOf(verdict, style.unicode));
  if (!style.colour) return mark;
  return std::string(kMarks[static_cast<std::size_t>(verdict)].colour) + mark + "\x1B[0m";
}

}  // namespace genostat::standalone
