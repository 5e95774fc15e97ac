// What is wrong with a path, in the words that both programs have for it.
#pragma once

#include <string>
#include <string_view>

#include "common/text/filled_text.h"

namespace genostat::common {

// "cannot read NAME: REASON", and the same for writing. Paths are UTF-8.
std::string cannotRead(std::string_view path, std::string_view reason, Translate translated = inEnglish);
std::string cannotWrite(std::string_view path, std::string_view reason, Translate translated = inEnglish);

// The reason for a path at which nothing is. It names what was perhaps meant: the path with another last
// name, one that is there.
enum class Expected { File, FileOrFolder };
std::string nothingThere(const std::string& path, Expected expected, Translate translated = inEnglish);

}  // namespace genostat::common
