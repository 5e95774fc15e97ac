#include "standalone/console/shell_completion.h"

namespace genostat::console {

platform::Completion completeShellLine(standalone::Session&, const std::string&, std::string_view,
                                       std::size_t) {
  return {};
}

}  // namespace genostat::console
