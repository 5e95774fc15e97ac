#include "platform/handle.h"

#include <unistd.h>

#include <cerrno>

namespace genostat::platform {

std::error_code lastError() {
  return {errno, std::generic_category()};
}

Handle::Handle(std::intptr_t opened) : value_(opened) {
  if (!*this) error_ = lastError();
}

void Handle::close() {
  if (*this && ::close(static_cast<int>(std::exchange(value_, kNone))) != 0) error_ = lastError();
}

}  // namespace genostat::platform
