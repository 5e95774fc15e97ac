// Any file as the progress of an analysis: what is read of it makes lines that fit a terminal and do it no
// harm.
#include <cmath>
#include <cstdint>

#include "common/text/printable_text.h"
#include "common/text/utf8.h"
#include "standalone/console/view/progress_lines.h"
#include "tests/fuzz/input_file.h"
#include "tests/fuzz/require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using genostat::test::require;
  namespace standalone = genostat::standalone;
  const auto file = genostat::test::writeInput("1.csv.progress", genostat::test::textOf(data, size));
  const std::optional<standalone::JobProgress> progress = standalone::readJobProgress(file);
  if (!progress) return 0;
  require(std::isfinite(progress->seconds) && progress->seconds >= 0, "a number of seconds");
  for (const int width : {20, 80}) {
    for (const std::string& line : standalone::progressLines({"job", 30, progress, 2}, {width, 10, true})) {
      require(genostat::common::displayWidth(line) < width, "narrower than the terminal: " + line);
      require(genostat::common::printableText(line) == line, "harmless: " + line);
    }
  }
  return 0;
}
