// How the analysis is started: launcher, script, payload.
#pragma once

#include <string>
#include <string_view>

#include "platform/process.h"

namespace genostat {

// Standard base64 (RFC 4648, section 4), padded, on one line: the form of the payload.
std::string encodeBase64(std::string_view data);

// One UTF-16 unit per byte, the byte taken as signed: ASCII maps to itself, 0x80 to 0xFF become
// 0xFF80 to 0xFFFF. No code page takes part.
std::u16string widenBytes(std::string_view bytes);

// The command that runs `launcher` (without its suffix) with a script and a payload. The command line
// holds the three in quotes, one blank between them; nothing inside the quotes is escaped.
platform::LaunchCommand launchCommand(const std::string& launcher, const std::string& script,
                                      const std::string& payload);

// The analysis script below the installation folder (which ends in a separator): the one in its
// "scripts" folder, or, when there is none, the folder's own, which need not exist.
std::string scriptPath(const std::string& installationFolder);

}  // namespace genostat
