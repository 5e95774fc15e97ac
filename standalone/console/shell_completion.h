// What may follow what is typed in genostat shell.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/line_editor.h"
#include "standalone/session/session.h"

namespace genostat::console {

// `before` are the lines of the command that has begun, if one has; `line` is the one that is typed.
platform::Completion completeShellLine(standalone::Session& session, const std::string& before,
                                       std::string_view line, std::size_t cursor);

}  // namespace genostat::console
