// A file to read from, by several threads at once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>

#include "platform/handle.h"

namespace genostat::platform {

// Failures are thrown as std::system_error.
class InputFile {
 public:
  // Waits for nobody, not even where a pipe is.
  explicit InputFile(const std::filesystem::path& path);

  // No folder, pipe or other device.
  bool isRegular() const { return regular_; }

  // In bytes, when it was opened.
  std::uint64_t size() const { return size_; }

  // Fills the front of `into` with the bytes from `offset` on and returns how many there are: fewer than
  // asked for at any time, 0 only at the end of the file. Any number of threads.
  std::size_t readAt(std::uint64_t offset, std::span<char> into) const;

 private:
  Handle file_;
  std::uint64_t size_ = 0;
  bool regular_ = false;
};

}  // namespace genostat::platform
