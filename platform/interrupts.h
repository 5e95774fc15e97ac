// Signals and console events that end a program unless it handles them.
#pragma once

#include <functional>

namespace genostat::platform {

enum class Interrupt {
  Key,  // Ctrl-C: SIGINT, or its console event on Windows
  End   // the program is to end: SIGTERM, SIGHUP, SIGQUIT; the console is closed, the user logs off
};

// Calls `handler` on a thread of its own for each interrupt; calls may overlap. Install once, before other
// threads start.
void onEachInterrupt(std::function<void(Interrupt)> handler);

}  // namespace genostat::platform
