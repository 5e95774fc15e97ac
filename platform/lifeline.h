// How a program that others start in turn learns that the program that it works for has gone.
#pragma once

#include <functional>

namespace genostat::platform {

// Names this program in the environment to all that it starts, and to what they start, as the one that they
// work for. Before other threads start.
void nameAsParent();

// Calls `handler` on a thread of its own once the program that is named in the environment has gone, in
// whatever way. Where none is named, or one on another computer, that is on Posix the program that started
// this one; on Windows, and where the system does not show that program, the handler is never called.
void onParentGone(std::function<void()> handler);

}  // namespace genostat::platform
