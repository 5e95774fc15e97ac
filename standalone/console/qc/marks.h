// Verdicts as single signs.
#pragma once

#include <string>
#include <string_view>

#include "standalone/console/qc/summary.h"
#include "standalone/output/text_renderer.h"

namespace genostat::standalone {

std::string_view markOf(Verdict verdict, bool unicode);

// In its colour, where the style has colours.
std::string paintedMark(Verdict verdict, const TextStyle& style);

}  // namespace genostat::standalone
