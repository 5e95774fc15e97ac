// Ending a running analysis.
#include "jobs/geno_stat_algo_manager.h"
#include "platform/process.h"

bool GenoStatAlgoManager::killProcess(int pid) {
  return genostat::platform::killProcessTree(pid);
}

int GenoStatAlgoManager::waitForPythonProcessToEnd() {
  return 0;
}
