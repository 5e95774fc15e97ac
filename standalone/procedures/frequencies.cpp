#include "standalone/procedures/commands.h"
#include "standalone/syntax/token_cursor.h"

namespace genostat::standalone {

void runFrequencies(CommandContext& context) {
  TokenCursor::fail("FREQUENCIES is not available yet", context.command.tokens.front());
}

}  // namespace genostat::standalone
