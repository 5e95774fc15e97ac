// A language that nobody speaks: "job '{1}' queued" is "[ĵøƀ '{1}' ɋúéúéđ]". What is readable in it
// was not looked up.
#pragma once

#include "standalone/language/language.h"

namespace genostat::standalone {

// Its code is "pseudo". It needs no table.
Language pseudoLanguage();

}  // namespace genostat::standalone
