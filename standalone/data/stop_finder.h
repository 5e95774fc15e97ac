// Where delimiters and line feeds stand in a text, 64 bytes at a time: each block gives a mask
// with one bit for each byte, so that the way from field to field is from bit to bit. Bytes are
// compared eight at a time in 64-bit words, which is fast enough on every processor.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

namespace genostat::standalone {

// Steps through the stops of a text. Behind the text kStopPadding line feeds have to stand, which
// end every search. Cheap to copy; borrows the text and the delimiters.
class StopFinder {
 public:
  static constexpr std::size_t kBlock = 64;

  static constexpr std::uint64_t inEveryByte(char c) {
    return 0x0101010101010101U * static_cast<unsigned char>(c);
  }

  // Delimiters as inEveryByte makes them.
  explicit StopFinder(std::span<const std::uint64_t> delimiters) {
    if (delimiters.empty()) return;
    delimiter_ = delimiters.front();
    others_ = delimiters.subspan(1);
  }

  // Begins at `position`.
  void seek(const char* position) {
    block_ = position;
    stops_ = markStops(position);
  }

  // Passes over what stands before `position`, which is after the stop that next() gave last.
  void skipTo(const char* position) {
    const auto distance = static_cast<std::size_t>(position - block_);
    if (distance >= kBlock) {
      seek(position);
    } else {
      stops_ &= ~std::uint64_t{0} << distance;
    }
  }

  // The next delimiter or line feed.
  const char* next() {
    while (stops_ == 0) {
      block_ += kBlock;
      stops_ = markStops(block_);
    }
    const char* stop = block_ + std::countr_zero(stops_);
    stops_ &= stops_ - 1;
    return stop;
  }

 private:
  static constexpr std::size_t kWord = sizeof(std::uint64_t);
  static_assert(std::endian::native == std::endian::little, "a text's first byte is its word's lowest");

  // The highest bit of each byte that is zero.
  static std::uint64_t markZeros(std::uint64_t word) {
    constexpr std::uint64_t kAllButHighest = inEveryByte(0x7F);
    return ~(((word & kAllButHighest) + kAllButHighest) | word | kAllButHighest);
  }

  // Bit b * 8 + w becomes bit w * 8 + b: H. S. Warren, "Hacker's Delight", 2nd ed. (2013), 7-3.
  static std::uint64_t transpose(std::uint64_t bits) {
    const auto swap = [&bits](int distance, std::uint64_t mask) {
      const std::uint64_t changed = (bits ^ bits >> distance) & mask;
      bits ^= changed ^ changed << distance;
    };
    swap(7, 0x00AA00AA00AA00AA);
    swap(14, 0x0000CCCC0000CCCC);
    swap(28, 0x00000000F0F0F0F0);
    return bits;
  }

  std::uint64_t markStops(const char* block) const {
    std::uint64_t marks = 0;
    for (std::size_t i = 0; i < kBlock / kWord; ++i) {
      std::uint64_t word = 0;
      std::memcpy(&word, block + i * kWord, kWord);
      std::uint64_t found = markZeros(word ^ inEveryByte('\n')) | markZeros(word ^ delimiter_);
      for (const std::uint64_t delimiter : others_) {
        found |= markZeros(word ^ delimiter);
      }
      marks |= found >> (kWord - 1 - i);
    }
    return transpose(marks);
  }

  std::uint64_t delimiter_ = inEveryByte('\n');
  std::span<const std::uint64_t> others_;
  const char* block_ = nullptr;
  std::uint64_t stops_ = 0;  // of the block, those that next() has not given yet
};

inline constexpr std::size_t kStopPadding = StopFinder::kBlock;

}  // namespace genostat::standalone
