// A window that moves over the bytes of a source.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "analysis/fastq/byte_source.h"

namespace genostat::analysis {

// Used by one thread at a time, except bytesRead().
class ByteWindow {
 public:
  // How far the window's begin can go back.
  static constexpr std::size_t kKept = 8;

  // How many bytes extending asks of the source.
  static constexpr std::size_t kStep = std::size_t{128} << 10;

  explicit ByteWindow(std::unique_ptr<ByteSource> source) : source_(std::move(source)) {}

  // The bytes in the window.
  std::span<const char> bytes() const { return std::span(buffer_).subspan(begin_, end_ - begin_); }
  // Where the first of them stands in the source.
  std::uint64_t offset() const { return bytesRead() - (end_ - begin_); }

  // Moves the window's begin to `next`, in the window or at its end; or up to kKept bytes back among
  // bytes that were in the window.
  void advanceTo(const char* next) { begin_ = static_cast<std::size_t>(next - buffer_.data()); }
  void advance(std::size_t size) { begin_ += size; }

  // Takes in up to `step` bytes more after the window's end; its bytes may change their place. False at the
  // end of the source, or when reading failed.
  bool extend(std::size_t step = kStep);
  // Extends until the window holds `size` bytes; false when it cannot.
  bool extendTo(std::size_t size, std::size_t step = kStep);

  // Moves bytes out of the window, and then straight from the source, until `into` is full or the source
  // ends; returns how many there are.
  std::size_t moveInto(std::span<char> into);
  // Puts the last of the bytes that moveInto() gave back into the window, which is empty.
  void giveBack(std::span<const char> tail);

  // The source can be read at any place: as if nothing had been taken from it.
  bool isPlaced() const { return source_->size() > 0; }
  std::unique_ptr<ByteSource> takeSource() { return std::move(source_); }

  // Why the source ended early; empty when it did not.
  const std::string& failure() const { return failure_; }

  // How many bytes have been taken from the source. Any thread.
  std::uint64_t bytesRead() const { return bytesRead_.load(std::memory_order_relaxed); }

 private:
  // As the source's read(), but a failure is noted and an end.
  std::size_t read(std::span<char> into);

  std::unique_ptr<ByteSource> source_;
  std::vector<char> buffer_;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
  std::string failure_;
  std::atomic<std::uint64_t> bytesRead_ = 0;
};

}  // namespace genostat::analysis
