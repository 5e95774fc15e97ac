// How wide text for people may be.
#pragma once

namespace genostat::common {

// What the variable COLUMNS of the environment asks for; 0 where it is not set, or no number from 20 to
// 10000.
int columnsWanted();

}  // namespace genostat::common
