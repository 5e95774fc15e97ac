// What the classes that hold a file's handle as a number share.
#pragma once

#include <windows.h>

#include <cstdint>
#include <system_error>

namespace genostat::platform {

inline HANDLE fileOf(std::intptr_t handle) {
  return reinterpret_cast<HANDLE>(handle);
}

// In the words that the C++ library has for it, which are the same on every system; the system's own where
// it has none.
inline std::error_code genericError(DWORD code) {
  const std::error_code error(static_cast<int>(code), std::system_category());
  const std::error_condition known = error.default_error_condition();
  if (known.category() != std::generic_category()) return error;
  return {known.value(), known.category()};
}

}  // namespace genostat::platform
