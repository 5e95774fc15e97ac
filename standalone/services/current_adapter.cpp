#include "standalone/services/current_adapter.h"

#include <atomic>

#include "host/language.h"

namespace {
std::atomic<ZORV_Adapter*> currentAdapter{nullptr};
}

namespace genostat::standalone {

void setCurrentAdapter(ZORV_Adapter* adapter) {
  currentAdapter.store(adapter);
}

}  // namespace genostat::standalone

ZORV_Adapter* GetAdapter() {
  return currentAdapter.load();
}
