// Verdicts as single signs.
#pragma once

#include <string>
#include <string_view>

#include "standalone/console/qc_summary.h"
#include "standalone/output/text_renderer.h"

namespace genostat::console {

std::string_view markOf(Verdict verdict, bool unicode);

// In its colour, where the style has colours.
std::string paintedMark(Verdict verdict, const standalone::TextStyle& style);

}  // namespace genostat::console
