#include "platform/handle.h"

#include <windows.h>

#include <bit>

namespace genostat::platform {

std::error_code lastError() {
  const std::error_code error(static_cast<int>(GetLastError()), std::system_category());
  const std::error_condition known = error.default_error_condition();
  if (known.category() != std::generic_category()) return error;
  return {known.value(), known.category()};
}

// Depending on which it is, a function that fails returns null or the invalid handle, which is -1.
Handle::Handle(std::intptr_t opened) : value_(opened == 0 ? kNone : opened) {
  if (!*this) error_ = lastError();
}

void Handle::close() {
  if (*this && CloseHandle(std::bit_cast<HANDLE>(std::exchange(value_, kNone))) == 0) error_ = lastError();
}

}  // namespace genostat::platform
