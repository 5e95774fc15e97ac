// How a fuzz target says that something is wrong.
#pragma once

#include <cstdlib>
#include <iostream>
#include <string_view>

namespace genostat::test {

// Ends the process unless `holds`; the fuzzer then keeps the input.
inline void require(bool holds, std::string_view what) {
  if (holds) return;
  std::cerr << "not so: " << what << std::endl;
  std::abort();
}

}  // namespace genostat::test
