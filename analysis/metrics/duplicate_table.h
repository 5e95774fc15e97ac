// Counts reads by their first characters, for the first kMaxKeys keys of a file.
//
// As long as keys are still being collected the reads must come in file order, by one thread. From then on
// the keys do not change, and any number of threads may look reads up, each counting for itself.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "analysis/fastq/record.h"
#include "analysis/metrics/duplication.h"

namespace genostat::analysis {

class DuplicateTable {
 public:
  // How many reads of each key one thread has counted, by the key's number.
  using Counts = std::vector<std::uint64_t>;

  DuplicateTable();

  // Whether all keys are collected.
  bool full() const { return counts_.size() == kMaxKeys; }

  // The next reads in file order. Returns how many of them were taken: fewer than given when the table became
  // full with the last one taken. Not when it is full already.
  std::size_t collect(std::span<const Record> records);

  // Counts reads of known keys in a full table.
  void count(std::span<const Record> records, Counts& counts) const;

  // All together, with views into the table; `parts` are what threads have counted in the full table.
  // `reads`: all of the file.
  DuplicationCounts result(std::uint64_t reads, std::span<const Counts> parts) const;

 private:
  // A key as it is looked up.
  struct Key {
    const char* text = nullptr;  // in upper case
    std::uint32_t size = 0;
    std::uint64_t hash = 0;
  };
  struct StoredKey {
    std::array<char, kKeyLength> text;
    std::uint8_t size;
  };
  using UpperCase = std::array<char, 64>;

  static constexpr std::size_t kSlotBits = 18;
  static constexpr std::size_t kSlots = std::size_t{1} << kSlotBits;
  // Of a slot: a key's number plus 1; above it is the hash's tag.
  static constexpr std::uint32_t kNumberMask = (1U << 17) - 1;
  static constexpr std::size_t kAtOnce = 32;

  static Key keyOf(const Record& record, UpperCase& upper);
  static std::size_t firstSlot(const Key& key) { return static_cast<std::size_t>(key.hash) & (kSlots - 1); }
  static std::uint32_t tagOf(const Key& key) {
    return static_cast<std::uint32_t>(key.hash >> 32) & ~kNumberMask;
  }
  bool holds(std::uint32_t number, const Key& key) const;
  // The slot that holds the key, or the empty one where it would go.
  std::size_t find(const Key& key) const;
  // Makes the keys of up to kAtOnce records and calls `use` for each when its slot has come near.
  template <typename Use>
  static void forEachKey(std::span<const Record> records, const std::uint32_t* slots, Use use);

  std::unique_ptr<std::uint32_t[]> slots_;  // 0: empty
  std::unique_ptr<StoredKey[]> keys_;       // in the order of collection
  std::uint64_t collected_ = 0;             // reads
  Counts counts_;                           // of the reads that were collected, one for each key
};

}  // namespace genostat::analysis
