// The system's wide text.
#pragma once

#include <string>
#include <string_view>

namespace genostat::platform {

// `codePage` is one of the system's, such as CP_UTF8.
std::wstring widen(std::string_view text, unsigned codePage);
std::string narrow(std::wstring_view wide, unsigned codePage);

}  // namespace genostat::platform
