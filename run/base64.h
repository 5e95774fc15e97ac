// Bytes as text, for the launcher's command line.
#pragma once

#include <string>
#include <string_view>

namespace genostat {

// Standard base64 (RFC 4648, section 4), padded, on one line.
std::string encodeBase64(std::string_view data);

}  // namespace genostat
