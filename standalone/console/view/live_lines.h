// Lines at the end of a terminal that are renewed in place, and all that is written above them.
//
// While they are shown, the cursor waits on an empty row above them. What another program writes meanwhile
// lands there, and clearing from the cursor on removes the lines whatever a resize has made of them.
#pragma once

#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "platform/terminal.h"

namespace genostat::standalone {

// Any thread.
class LiveLines {
 public:
  // `terminal` describes the terminal as it is now; `write` gets bytes for it, one call at a time.
  LiveLines(std::function<platform::Terminal()> terminal, std::function<void(std::string_view)> write)
      : terminal_(std::move(terminal)), write_(std::move(write)) {}

  platform::Terminal terminal() const { return terminal_(); }

  // Shows these lines in place of those before; none: leaves nothing of them. Lines that do not fit are cut
  // at the right and at the bottom. Nothing is shown while another job has the terminal's foreground.
  void draw(std::vector<std::string> lines);

  // Calls `write`, which writes whole lines to the terminal: they come to stand above the live ones.
  void writeAbove(const std::function<void()>& write);

  // Removes the lines for good.
  void close();

 private:
  void erase();

  const std::function<platform::Terminal()> terminal_;
  const std::function<void(std::string_view)> write_;
  std::mutex mutex_;                // guards the terminal and all below
  std::vector<std::string> lines_;  // that are shown
  int width_ = 0;                   // of the terminal at that time
  int height_ = 0;
  bool closed_ = false;
};

}  // namespace genostat::standalone
