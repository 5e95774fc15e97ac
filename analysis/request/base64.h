// Base64 as a command-line argument carries it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace genostat::analysis {

// Decodes standard base64 strictly: padded to a multiple of 4, no line breaks or blanks, unused
// bits zero. Nothing when the text is anything else. Empty text decodes to empty bytes.
std::optional<std::string> decodeBase64(std::string_view text);

}  // namespace genostat::analysis
