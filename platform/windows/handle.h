// A kernel object's handle, closed once.
#pragma once

#include <utility>

namespace genostat::platform {

// `close` is CloseHandle; it is passed in so that this header needs no system header.
class UniqueHandle {
 public:
  using Close = int(__stdcall*)(void*);

  UniqueHandle(void* handle, Close close) : handle_(handle), close_(close) {}
  UniqueHandle(UniqueHandle&& other) noexcept
      : handle_(std::exchange(other.handle_, nullptr)), close_(other.close_) {}
  UniqueHandle& operator=(UniqueHandle&&) = delete;
  ~UniqueHandle() {
    if (valid()) close_(handle_);
  }

  void* get() const { return handle_; }
  // Functions that fail answer null or the invalid-handle value, depending on which it is.
  bool valid() const { return handle_ != nullptr && handle_ != invalid(); }

 private:
  static void* invalid() { return reinterpret_cast<void*>(~static_cast<unsigned long long>(0)); }

  void* handle_;
  Close close_;
};

}  // namespace genostat::platform
