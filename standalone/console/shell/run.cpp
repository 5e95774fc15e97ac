#include "standalone/console/shell/run.h"

#include <memory>
#include <stdexcept>
#include <string>

#include "platform/interrupts.h"
#include "platform/suspension.h"
#include "standalone/console/exit_status.h"
#include "standalone/console/session_setup.h"
#include "standalone/console/shell/shell.h"
#include "standalone/language/translation.h"

namespace genostat::standalone {

int runShell(const ShellOptions& options) {
  // The threads of signals keep it until the program ends.
  const auto shell = std::make_shared<Shell>(options);
  platform::onSuspend([shell] { shell->view().suspend(); });
  platform::onEachInterrupt([shell](platform::Interrupt kind) { shell->interrupt(kind); });
  const auto refuse = [&shell](const char* message, int status) {
    shell->view().showNotice(translated("error: {1}", {message}));
    return status;
  };
  try {
    shell->begin();
  } catch (const UsageError& error) {
    return refuse(error.what(), kUsageError);
  } catch (const std::runtime_error& error) {
    return refuse(error.what(), kFailure);
  }
  return shell->run();
}

}  // namespace genostat::standalone
