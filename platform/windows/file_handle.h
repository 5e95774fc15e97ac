// What the classes that hold a file's handle as a number share.
#pragma once

#include <windows.h>

#include <cstdint>
#include <system_error>

namespace genostat::platform {

inline HANDLE fileOf(std::intptr_t handle) {
  return reinterpret_cast<HANDLE>(handle);
}

// In the words that the C++ library has for it, which are the same on every system.
inline std::error_code genericError(DWORD code) {
  const std::error_code error(static_cast<int>(code), std::system_category());
  return {error.default_error_condition().value(), std::generic_category()};
}

}  // namespace genostat::platform
