// Paths that people misspell.
#pragma once

#include <string>

namespace genostat::common {

// For a path at which nothing is, UTF-8: the path with the last name replaced by one that is there and was
// meant; empty when there is none.
std::string nearestPath(const std::string& path);

}  // namespace genostat::common
