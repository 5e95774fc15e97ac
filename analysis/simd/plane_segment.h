// Counters by position whose bits lie apart: bit planes.
//
// A byte holds eight flags of one position ("the base is an A", "the quality is 37", ...). To count how often
// each flag was set, a plane of level k keeps bit k of all the counters, in the same layout as the flags;
// adding a vector of flags is then the logic of a binary adder on whole vectors, 512 counters at a time with
// 64-byte vectors. Sixty-four lines are added up among themselves first, so that most planes are touched once
// for all.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>

namespace genostat::analysis {

// Positions are taken in blocks of 64.
constexpr std::size_t kBlockSize = 64;

// The planes of eight flags over kBlocks blocks of positions. A level takes memory once a count needs it.
class PlaneSegment {
 public:
  static constexpr std::size_t kBlocks = 16;
  static constexpr std::size_t kLevels = 40;

  // The plane of a level, kBlocks * kBlockSize bytes; zeros when it is new. Throws std::bad_alloc.
  std::uint8_t* level(std::size_t level) {
    if (!levels_[level]) levels_[level] = std::make_unique<Plane>();
    return levels_[level]->bytes.data();
  }

  // How often each of the eight flags was set at a position (0 <= position < kBlocks * kBlockSize), added
  // to `counts`.
  void addCounts(std::size_t position, std::uint64_t* counts) const;

 private:
  struct alignas(kBlockSize) Plane {
    std::array<std::uint8_t, kBlocks * kBlockSize> bytes{};
  };

  std::array<std::unique_ptr<Plane>, kLevels> levels_;
};

}  // namespace genostat::analysis
