// How often each value occurs.
#pragma once

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <span>
#include <vector>

namespace genostat::standalone {

template <typename Value>
struct ValueCount {
  Value value;
  std::size_t count;
};

// Each distinct value of an ascending sequence once, in its order. Zeros of both signs are one value.
template <typename Value>
std::vector<ValueCount<Value>> countValues(std::span<const Value> sorted) {
  std::vector<ValueCount<Value>> counts;
  for (const Value& value : sorted) {
    if (counts.empty() || counts.back().value != value) counts.push_back({value, 0});
    ++counts.back().count;
  }
  return counts;
}

// The most frequent value. Of several it is the smallest, and `unique` is false.
template <typename Value>
struct Mode {
  Value value;
  bool unique;
};

// `counts` must not be empty.
template <typename Value>
Mode<Value> findMode(std::span<const ValueCount<Value>> counts) {
  const auto mode = std::ranges::max_element(counts, {}, &ValueCount<Value>::count);
  const auto next = std::ranges::find(std::next(mode), counts.end(), mode->count, &ValueCount<Value>::count);
  return {mode->value, next == counts.end()};
}

}  // namespace genostat::standalone
