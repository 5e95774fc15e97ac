// Why the system refused something.
#pragma once

#include <string>
#include <string_view>

namespace genostat::standalone {

// The system's message in the user's language, as far as it is one of those that users see: "no space left on
// device". Others, and those of systems that speak the user's language themselves, stay as they are.
std::string translatedReason(std::string_view message);

}  // namespace genostat::standalone
