#include "standalone/procedures/commands.h"
#include "standalone/syntax/token_cursor.h"

namespace genostat::standalone {

void runRegression(CommandContext& context) {
  TokenCursor::fail("REGRESSION is not available yet", context.command.tokens.front());
}

}  // namespace genostat::standalone
