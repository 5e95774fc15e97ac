// Handles as the system's functions give and take them.
#pragma once

#include <windows.h>

#include <bit>

#include "platform/handle.h"

namespace genostat::platform {

inline Handle owned(HANDLE opened) {
  return Handle(std::bit_cast<std::intptr_t>(opened));
}

inline HANDLE kernelObject(const Handle& handle) {
  return std::bit_cast<HANDLE>(handle.get());
}

}  // namespace genostat::platform
