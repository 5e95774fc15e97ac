#include "standalone/procedures/commands.h"
#include "standalone/syntax/token_cursor.h"

namespace genostat::standalone {

void runNonparCorr(CommandContext& context) {
  TokenCursor::fail("NONPAR CORR is not available yet", context.command.tokens.front());
}

}  // namespace genostat::standalone
