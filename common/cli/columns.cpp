#include "common/cli/columns.h"

#include <charconv>
#include <cstdlib>
#include <string_view>
#include <system_error>

namespace genostat::common {

int columnsWanted() {
  constexpr int kNarrowest = 20;
  constexpr int kWidest = 10000;
  const char* value = std::getenv("COLUMNS");
  const std::string_view text = value != nullptr ? value : "";
  int columns = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), columns);
  const bool usable = result.ec == std::errc() && result.ptr == text.data() + text.size() &&
                      columns >= kNarrowest && columns <= kWidest;
  return usable ? columns : 0;
}

}  // namespace genostat::common
