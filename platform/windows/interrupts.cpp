#include "platform/interrupts.h"

#include <windows.h>

#include <utility>

namespace genostat::platform {

namespace {

std::function<void(Interrupt)>& eventHandler() {
  static auto* handler = new std::function<void(Interrupt)>;
  return *handler;
}

BOOL WINAPI handleEvent(DWORD event) {
  eventHandler()(event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT ? Interrupt::Key : Interrupt::End);
  return TRUE;
}

}  // namespace

void onEachInterrupt(std::function<void(Interrupt)> handler) {
  eventHandler() = std::move(handler);
  SetConsoleCtrlHandler(handleEvent, TRUE);
}

}  // namespace genostat::platform
