// Ending a running analysis.
#include <exception>

#include "jobs/geno_stat_algo_manager.h"
#include "platform/process.h"

bool GenoStatAlgoManager::killProcess(int pid) {
  try {
    return genostat::platform::killProcessTree(pid);
  } catch (const std::exception&) {
    // Out of memory: the client still has to hear of the cancellation.
    return false;
  }
}

int GenoStatAlgoManager::waitForPythonProcessToEnd() {
  return 0;
}
