// Where text stands that the line editor has drawn on a terminal.
#pragma once

#include <string_view>

namespace genostat::platform {

// The row below the prompt's on which the cursor stands behind `text`, which follows a prompt of so many
// columns. The locale says how wide characters are.
int rowBehind(std::wstring_view text, int promptColumns, int terminalColumns);

}  // namespace genostat::platform
