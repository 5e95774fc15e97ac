// FASTQ by the rules, written for clarity: the whole text is cut into lines first.
#pragma once

#include <string>
#include <string_view>
#include <tuple>
#include <vector>

namespace genostat::test {

struct ReferenceResult {
  std::vector<std::tuple<std::string, std::string, std::string>> records;  // header, sequence, quality
  std::string error;                                                       // empty when there is none
};

ReferenceResult parseSlowly(std::string_view text);

}  // namespace genostat::test
