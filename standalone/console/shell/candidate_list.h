// What completion has to offer, as a person is shown it.
#pragma once

#include <string>
#include <vector>

namespace genostat::standalone {

// Whole lines of at most so many columns where that is possible, to be read downwards. Of paths the last
// part. Of very many the first, and how many more there are. Printable UTF-8.
std::string candidateList(const std::vector<std::string>& candidates, int columns);

}  // namespace genostat::standalone
