// Lines that a person edits on a terminal, by the library libedit.
#pragma once

#include <memory>

#include "platform/line_editor.h"

namespace genostat::platform {

// Null when the terminal cannot be used so.
std::unique_ptr<LineEditor> makeEditedLines(LineEditor::Options options);

}  // namespace genostat::platform
