#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "common/text/number_text.h"
#include "common/text/utf8.h"
#include "common/text/wrapped_text.h"
#include "standalone/console/qc/text.h"
#include "standalone/language/translation.h"
#include "standalone/output/number_format.h"

namespace genostat::standalone {

namespace {

constexpr int kGap = 2;              // blanks between columns
constexpr int kLeastNameWidth = 14;  // names are shortened to this before columns go to another block
constexpr int kLegendIndent = 2;

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

std::string_view markOf(Verdict verdict, bool unicode) {
  const Mark& mark = kMarks[static_cast<std::size_t>(verdict)];
  return unicode ? mark.unicode : mark.ascii;
}

struct ShownColumn {
  std::string header;
  std::vector<std::string> cells;
  bool marks = false;
  int width = 0;

  // When all cells are there.
  void measure() {
    width = common::displayWidth(header);
    for (const std::string& cell : cells) {
      width = std::max(width, common::displayWidth(cell));
    }
  }
};

std::string blanks(int count) {
  return std::string(static_cast<std::size_t>(std::max(count, 0)), ' ');
}

std::string decimals(double number, int count) {
  return formatNumber(number, {count});
}

std::vector<ShownColumn> valueColumns(const std::vector<QcSample>& samples, bool unicode) {
  std::vector<ShownColumn> columns;
  for (const char* header : {marked("Reads"), marked("Bases"), marked("Length"), marked("GC %"),
                             marked("Dup. %"), marked("Qual."), marked("Score")}) {
    columns.push_back({translated(header), {}});
  }
  columns.push_back({"", {}, true});
  for (const QcCheck& check : qcChecks()) {
    columns.back().header += check.names().letter;
  }
  for (const QcSample& sample : samples) {
    std::string marks;
    for (const Verdict verdict : sample.verdicts) {
      marks += markOf(verdict, unicode);
    }
    const std::array<std::string, 8> cells = {common::shortCount(sample.reads),
                                              common::shortCount(sample.bases),
                                              common::printableText(sample.length),
                                              decimals(sample.gc, 1),
                                              decimals(sample.duplicates, 1),
                                              decimals(sample.quality, 1),
                                              decimals(sample.score, 0),
                                              marks};
    for (std::size_t i = 0; i < columns.size(); ++i) {
      columns[i].cells.push_back(cells[i]);
    }
  }
  for (ShownColumn& column : columns) {
    column.measure();
  }
  return columns;
}

std::string paintedMarks(const QcSample& sample, const TextStyle& style) {
  std::string marks;
  for (const Verdict verdict : sample.verdicts) {
    marks += paintedMark(verdict, style);
  }
  return marks;
}

std::string emphasised(const std::string& text, const TextStyle& style) {
  return style.colour ? "\x1B[1m" + text + "\x1B[0m" : text;
}

// The lines of one block: names and some of the columns.
std::string drawBlock(const ShownColumn& names, std::span<const ShownColumn> columns,
                      const std::vector<QcSample>& samples, const TextStyle& style) {
  const int nameWidth = names.width;
  std::string header = names.header + blanks(nameWidth - common::displayWidth(names.header));
  for (const ShownColumn& column : columns) {
    header += blanks(kGap + column.width - common::displayWidth(column.header)) + column.header;
  }
  std::string text = emphasised(header, style) + '\n';
  for (std::size_t row = 0; row < samples.size(); ++row) {
    text += names.cells[row] + blanks(nameWidth - common::displayWidth(names.cells[row]));
    for (const ShownColumn& column : columns) {
      const std::string& cell = column.cells[row];
      text += blanks(kGap + column.width - common::displayWidth(cell));
      text += column.marks ? paintedMarks(samples[row], style) : cell;
    }
    text += '\n';
  }
  return text;
}

ShownColumn nameColumn(const std::vector<QcSample>& samples, int width, bool unicode) {
  ShownColumn names{translated("Sample"), {}};
  for (const QcSample& sample : samples) {
    const std::string name = common::printableText(sample.name);
    const std::string read = sample.read == 0 ? "" : " R" + std::to_string(sample.read);
    names.cells.push_back(shortenedName(name, width - static_cast<int>(read.size()), unicode) + read);
  }
  names.measure();
  return names;
}

std::string legend(const TextStyle& style) {
  // A line ends between entries, never inside of one.
  std::string lines;
  int used = 0;
  for (const QcCheck& check : qcChecks()) {
    std::string entry = std::string(1, check.names().letter) + ' ' + translated(check.names().title);
    if (&check != &qcChecks().back()) entry += ',';
    const int width = common::displayWidth(entry) + 1;
    const bool fits = used > 0 && used + width <= style.width;
    lines += fits ? " " : (used > 0 ? "\n" : "") + blanks(kLegendIndent);
    used = (fits ? used : kLegendIndent - 1) + width;
    lines += entry;
  }
  lines += '\n';
  for (const Verdict verdict : {Verdict::Pass, Verdict::Warn, Verdict::Fail, Verdict::None}) {
    const std::string word =
        verdict == Verdict::None ? translated("not judged") : translated(common::verdictWord(verdict));
    lines += blanks(kLegendIndent) + paintedMark(verdict, style) + ' ' + word;
  }
  return lines + '\n';
}

}  // namespace

std::string paintedMark(Verdict verdict, const TextStyle& style) {
  std::string mark(markOf(verdict, style.unicode));
  if (!style.colour) return mark;
  return std::string(kMarks[static_cast<std::size_t>(verdict)].colour) + mark + "\x1B[0m";
}

std::string shortenedName(const std::string& text, int width, bool unicode) {
  if (common::displayWidth(text) <= width) return text;
  const std::string_view dots = unicode ? "\u2026" : "..";
  const int room = std::max(width - common::displayWidth(dots), 2);
  std::size_t tail = text.size();
  while (common::displayWidth(std::string_view(text).substr(tail)) < room / 2) {
    tail = common::characterBefore(text, tail);
  }
  const int behind = common::displayWidth(std::string_view(text).substr(tail));
  return std::string(common::cutToWidth(text, room - behind)).append(dots) + text.substr(tail);
}

std::string renderQcTable(const std::vector<QcSample>& samples, const TextStyle& style) {
  const std::vector<ShownColumn> columns = valueColumns(samples, style.unicode);
  int all = 0;
  for (const ShownColumn& column : columns) {
    all += kGap + column.width;
  }
  const int room = style.width - all;
  const int nameWidth = room >= kLeastNameWidth ? room : std::max(kLeastNameWidth, style.width / 3);
  const ShownColumn names = nameColumn(samples, nameWidth, style.unicode);
  std::string text = "\n" + emphasised(translated("Samples"), style) + '\n';
  for (std::size_t begin = 0; begin < columns.size();) {
    int used = names.width;
    std::size_t end = begin;
    while (end < columns.size() && (end == begin || used + kGap + columns[end].width <= style.width)) {
      used += kGap + columns[end++].width;
    }
    if (begin > 0) text += '\n';
    text += drawBlock(names, std::span(columns).subspan(begin, end - begin), samples, style);
    begin = end;
  }
  return text + legend(style);
}

}  // namespace genostat::standalone
