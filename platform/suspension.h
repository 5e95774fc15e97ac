// Stopping a program for a while, as by Ctrl-Z, when it shows something that changes.
#pragma once

#include <functional>

namespace genostat::platform {

// Calls `handler` on a thread of its own each time the user wants the program to stop for now; it prepares
// for that and calls suspendProgram(). Install once, before other threads start, those of interrupts
// included. Has an effect on POSIX systems only.
void onSuspend(std::function<void()> handler);

// For the handler alone: returns when the program goes on. At once where nobody could make it go on.
void suspendProgram();

}  // namespace genostat::platform
