// What the operating system has opened for the program: a file descriptor, or on Windows a handle.
#pragma once

#include <cstdint>
#include <system_error>
#include <utility>

namespace genostat::platform {

// Why the calling thread's latest call to the system failed: in the words that the C++ library has for it,
// which are the same on every system, or in the system's own where it has none.
std::error_code lastError();

// Closed exactly once; none after it was moved.
class Handle {
 public:
  Handle() = default;
  // Takes over what a call has opened; where that failed, keeps the reason.
  explicit Handle(std::intptr_t opened);
  Handle(Handle&& other) noexcept : value_(std::exchange(other.value_, kNone)), error_(other.error_) {}
  Handle& operator=(Handle&& other) noexcept {
    close();
    value_ = std::exchange(other.value_, kNone);
    error_ = other.error_;
    return *this;
  }
  ~Handle() { close(); }

  explicit operator bool() const { return value_ != kNone; }
  // As the system knows it.
  std::intptr_t get() const { return value_; }
  // Of opening or closing it.
  const std::error_code& error() const { return error_; }

  void close();

 private:
  static constexpr std::intptr_t kNone = -1;

  std::intptr_t value_ = kNone;
  std::error_code error_;
};

}  // namespace genostat::platform
