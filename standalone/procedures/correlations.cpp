#include "standalone/procedures/commands.h"
#include "standalone/syntax/token_cursor.h"

namespace genostat::standalone {

void runCorrelations(CommandContext& context) {
  TokenCursor::fail("CORRELATIONS is not available yet", context.command.tokens.front());
}

}  // namespace genostat::standalone
