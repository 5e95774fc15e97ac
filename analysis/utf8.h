// UTF-8 checks for text that comes from outside: names of files, paths in a request.
#pragma once

#include <string>
#include <string_view>

namespace genostat::analysis {

// Well-formed UTF-8: no overlong forms, no surrogates, nothing above U+10FFFF.
bool isValidUtf8(std::string_view text);

// The text with every byte that is not part of well-formed UTF-8 replaced by U+FFFD.
std::string repairedUtf8(std::string_view text);

}  // namespace genostat::analysis
