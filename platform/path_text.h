// Paths as text.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace genostat::platform {

// Text is UTF-8 everywhere inside our programs; paths are converted here, once.
std::filesystem::path pathFromUtf8(std::string_view utf8);
std::string pathToUtf8(const std::filesystem::path& path);
// A path in the system's narrow encoding, for interfaces that take byte strings, and back.
std::string pathToNarrow(const std::filesystem::path& path);
std::filesystem::path pathFromNarrow(std::string_view narrow);

}  // namespace genostat::platform
