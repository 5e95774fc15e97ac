#include "platform/suspension.h"

namespace genostat::platform {

void onSuspend(std::function<void()> /*handler*/) {}

void suspendProgram() {}

}  // namespace genostat::platform
