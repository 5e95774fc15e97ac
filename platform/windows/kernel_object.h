// Handles as the system's functions give and take them.
#pragma once

#include <windows.h>

#include "platform/handle.h"

namespace genostat::platform {

inline Handle owned(HANDLE opened) {
  return Handle(reinterpret_cast<std::intptr_t>(opened));
}

inline HANDLE kernelObject(const Handle& handle) {
  return reinterpret_cast<HANDLE>(handle.get());
}

}  // namespace genostat::platform
