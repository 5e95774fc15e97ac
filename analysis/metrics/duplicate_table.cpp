#include "analysis/metrics/duplicate_table.h"

#include <algorithm>
#include <cstring>

#include "common/text/ascii.h"

namespace genostat::analysis {

namespace {

static_assert(kMaxKeys < (std::size_t{1} << 17));

__extension__ using Wide = unsigned __int128;

// Both halves of the product: every bit of either factor reaches many of the result.
std::uint64_t mix(std::uint64_t a, std::uint64_t b) {
  const Wide product = Wide{a} * b;
  return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

std::uint64_t load(const char* text) {
  std::uint64_t word = 0;
  std::memcpy(&word, text, sizeof word);
  return word;
}

constexpr std::uint64_t kLowerCaseBits = 0x2020202020202020;
constexpr std::array<std::uint64_t, 4> kSalts = {0x9E3779B97F4A7C15, 0xD1B54A32D192ED03, 0x8CB92BA72F3D8DD7,
                                                 0xABC98388FB8FAC03};

using Words = std::array<std::uint64_t, 8>;

// The key in words, zeros after its end. Reads whole words: up to 7 bytes more than the key has.
Words wordsOf(const char* text, std::size_t size) {
  Words words{};
  // Nearly all reads are long enough: no branch for each word.
  const std::size_t whole = size == kKeyLength ? kKeyLength / 8 : size / 8;
  for (std::size_t i = 0; i < whole; ++i) {
    words[i] = load(text + 8 * i);
  }
  const std::size_t left = size - 8 * whole;
  if (left > 0) words[whole] = load(text + 8 * whole) & ((std::uint64_t{1} << (8 * left)) - 1);
  return words;
}

}  // namespace

DuplicateTable::DuplicateTable()
    : slots_(std::make_unique<std::uint32_t[]>(kSlots)),
      // Not touched before it is needed.
      keys_(std::make_unique_for_overwrite<StoredKey[]>(kMaxKeys)) {}

DuplicateTable::Key DuplicateTable::keyOf(const Record& record, UpperCase& upper) {
  Key key;
  key.text = record.sequence.data();
  key.size = static_cast<std::uint32_t>(std::min(record.sequence.size(), kKeyLength));
  Words words = wordsOf(key.text, key.size);
  std::uint64_t seen = 0;
  for (const std::uint64_t word : words) {
    seen |= word;
  }
  if ((seen & kLowerCaseBits) != 0) {
    std::transform(key.text, key.text + key.size, upper.begin(), common::upperLetter);
    key.text = upper.data();
    words = wordsOf(key.text, key.size);
  }
  words[7] = key.size;
  for (std::size_t i = 0; i < 4; ++i) {
    key.hash ^= mix(words[2 * i] ^ kSalts[i], words[2 * i + 1] ^ kSalts[(i + 1) % 4]) + i;
  }
  key.hash = mix(key.hash, kSalts[0]);
  return key;
}

bool DuplicateTable::holds(std::uint32_t number, const Key& key) const {
  const StoredKey& stored = keys_[number];
  return stored.size == key.size && std::memcmp(stored.text.data(), key.text, key.size) == 0;
}

std::size_t DuplicateTable::find(const Key& key) const {
  const std::uint32_t tag = tagOf(key);
  for (std::size_t at = firstSlot(key);; at = (at + 1) & (kSlots - 1)) {
    const std::uint32_t slot = slots_[at];
    if (slot == 0) return at;
    if ((slot & ~kNumberMask) == tag && holds((slot & kNumberMask) - 1, key)) return at;
  }
}

template <typename Use>
void DuplicateTable::forEachKey(std::span<const Record> records, const std::uint32_t* slots, Use use) {
  std::array<Key, kAtOnce> keys;
  std::array<UpperCase, kAtOnce> upper;
  while (!records.empty()) {
    const std::size_t count = std::min(records.size(), kAtOnce);
    for (std::size_t i = 0; i < count; ++i) {
      keys[i] = keyOf(records[i], upper[i]);
      // Most slots are not in the nearest cache; asked for together, they are waited for together.
      __builtin_prefetch(slots + firstSlot(keys[i]));
    }
    for (std::size_t i = 0; i < count; ++i) {
      if (!use(keys[i])) return;
    }
    records = records.subspan(count);
  }
}

std::size_t DuplicateTable::collect(std::span<const Record> records) {
  std::size_t taken = 0;
  forEachKey(records, slots_.get(), [&](const Key& key) {
    std::uint32_t& slot = slots_[find(key)];
    if (slot == 0) {
      StoredKey& stored = keys_[counts_.size()];
      std::memcpy(stored.text.data(), key.text, key.size);
      stored.size = static_cast<std::uint8_t>(key.size);
      counts_.push_back(0);
      slot = tagOf(key) | static_cast<std::uint32_t>(counts_.size());
    }
    ++counts_[(slot & kNumberMask) - 1];
    ++taken;
    return !full();
  });
  collected_ += taken;
  return taken;
}

void DuplicateTable::count(std::span<const Record> records, Counts& counts) const {
  counts.resize(kMaxKeys);
  forEachKey(records, slots_.get(), [&](const Key& key) {
    const std::uint32_t slot = slots_[find(key)];
    if (slot != 0) ++counts[(slot & kNumberMask) - 1];
    return true;
  });
}

DuplicationCounts DuplicateTable::result(std::uint64_t reads, std::span<const Counts> parts) const {
  DuplicationCounts result;
  result.reads = reads;
  result.limit = collected_;
  result.keys.reserve(counts_.size());
  for (std::size_t i = 0; i < counts_.size(); ++i) {
    std::uint64_t count = counts_[i];
    for (const Counts& part : parts) {
      if (!part.empty()) count += part[i];
    }
    result.keys.emplace_back(std::string_view(keys_[i].text.data(), keys_[i].size), count);
  }
  return result;
}

}  // namespace genostat::analysis
