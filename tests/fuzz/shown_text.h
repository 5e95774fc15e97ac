// What may reach a terminal.
#pragma once

#include <string>
#include <string_view>

#include "common/text/printable_text.h"
#include "tests/fuzz/require.h"

namespace genostat::test {

// No byte of it steers a terminal.
inline void requireHarmless(std::string_view shown) {
  require(common::printableText(shown, common::LineBreaks::Keep) == shown,
          "shown as it is: " + common::printableText(shown));
}

}  // namespace genostat::test
