// Memory for text that vector code reads.
#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <utility>

namespace genostat::analysis {

// Bytes that keep their place while they fit. After the capacity kPadding further bytes may be read (not
// written), so that a vector load that starts inside the text never leaves the allocation.
class TextBuffer {
 public:
  static constexpr std::size_t kPadding = 128;

  TextBuffer() = default;

  char* data() { return bytes_.get(); }
  const char* data() const { return bytes_.get(); }
  std::size_t capacity() const { return capacity_; }

  // Makes room for `capacity` bytes and keeps the first `used`. Views into the old bytes become invalid
  // when it grows. Throws std::bad_alloc.
  void reserve(std::size_t capacity, std::size_t used = 0) {
    if (capacity <= capacity_) return;
    // Not value-initialised: fresh pages cost time, and most are written at once anyway.
    auto larger = std::make_unique_for_overwrite<char[]>(capacity + kPadding);
    if (used > 0) std::memcpy(larger.get(), bytes_.get(), used);
    std::memset(larger.get() + capacity, 0, kPadding);
    bytes_ = std::move(larger);
    capacity_ = capacity;
  }

 private:
  std::unique_ptr<char[]> bytes_;
  std::size_t capacity_ = 0;
};

}  // namespace genostat::analysis
