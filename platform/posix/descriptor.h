// Calls with file descriptors that a signal may interrupt.
#pragma once

#include <unistd.h>

#include <cerrno>
#include <string_view>

#include "platform/handle.h"

namespace genostat::platform {

inline int descriptor(const Handle& handle) {
  return static_cast<int>(handle.get());
}

// Makes the call again as long as a signal interrupts it.
template <typename Call>
auto uninterrupted(Call call) {
  auto result = call();
  while (result == -1 && errno == EINTR)
    result = call();
  return result;
}

// False when the system refuses a part of it; lastError() is the reason.
inline bool writeAll(const Handle& file, std::string_view text) {
  while (!text.empty()) {
    const ssize_t size = uninterrupted([&] { return write(descriptor(file), text.data(), text.size()); });
    if (size < 0) return false;
    text.remove_prefix(static_cast<std::size_t>(size));
  }
  return true;
}

}  // namespace genostat::platform
