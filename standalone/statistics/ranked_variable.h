// The order of one variable's values, from which ranks within any of its cases follow without
// sorting again.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace genostat::standalone {

// Cases are numbered with 32 bits.
struct RankedVariable {
  std::vector<std::uint32_t> order;   // the cases that are not missing, by ascending value
  std::vector<std::uint32_t> groups;  // [case]: how many smaller values there are, equal ones counted
                                      // once; 0 also for a missing case
  std::size_t groupCount = 0;         // different values
};

// Not-a-number is missing. Throws std::length_error beyond 2^32 - 1 cases.
RankedVariable rankVariable(std::span<const double> values);

// Mid-ranks from 1 on within the cases marked in `included` [case], in none of which the variable
// is missing: equal values share the mean of the places that they take. Other cases are not-a-number.
std::vector<double> midRanks(const RankedVariable& variable, const std::vector<bool>& included);

}  // namespace genostat::standalone
