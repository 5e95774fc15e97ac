#include "platform/suspension.h"

namespace genostat::platform {

// NOLINTNEXTLINE(performance-unnecessary-value-param): POSIX systems keep the handler.
void onSuspend(std::function<void()> /*handler*/) {}

void suspendProgram() {}

}  // namespace genostat::platform
