#include "standalone/console/view/live_lines.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace genostat::standalone {

namespace {

// From the row below on: what is cleared from a screen's first place on, terminals with a history keep in it.
constexpr std::string_view kEraseBelow = "\r\n\x1B[J\x1B[1A";
constexpr std::string_view kEraseRestOfRow = "\x1B[K";
// The terminal may have become narrower since it was asked: what is too wide must not take a second row.
constexpr std::string_view kCutAtMargin = "\x1B[?7l";
constexpr std::string_view kWrapAtMargin = "\x1B[?7h";

// From the empty row above the lines, back to it. Rows are overwritten, not cleared first: that would
// flicker.
std::string drawnFrame(const std::vector<std::string>& lines) {
  std::string frame = "\r";
  frame += kCutAtMargin;
  frame += kEraseRestOfRow;
  for (const std::string& line : lines) {
    frame += "\r\n" + line;
    frame += kEraseRestOfRow;
  }
  frame += "\x1B[J\x1B[" + std::to_string(lines.size()) + "A\r";
  frame += kWrapAtMargin;
  return frame;
}

}  // namespace

void LiveLines::draw(std::vector<std::string> lines) {
  const std::lock_guard lock(mutex_);
  const platform::Terminal terminal = terminal_();
  if (lines.empty() || closed_ || !terminal.isForeground) return erase();
  // One row stays free for the cursor.
  lines.resize(std::min(lines.size(), static_cast<std::size_t>(std::max(terminal.height - 1, 1))));
  const bool resized = terminal.width != width_ || terminal.height != height_;
  if (lines == lines_ && !resized) return;
  lines_ = std::move(lines);
  width_ = terminal.width;
  height_ = terminal.height;
  write_(drawnFrame(lines_));
}

void LiveLines::writeAbove(const std::function<void()>& write) {
  const std::lock_guard lock(mutex_);
  const std::vector<std::string> lines = lines_;
  erase();
  write();
  if (lines.empty() || !terminal_().isForeground) return;
  lines_ = lines;
  write_(drawnFrame(lines_));
}

void LiveLines::close() {
  const std::lock_guard lock(mutex_);
  erase();
  closed_ = true;
}

void LiveLines::erase() {
  // In the background, the rows below the cursor may belong to another program.
  if (!lines_.empty() && terminal_().isForeground) write_(kEraseBelow);
  lines_.clear();
}

}  // namespace genostat::standalone
