#include "standalone/console/start_phase.h"

#include <chrono>
#include <thread>

#include "platform/running_program.h"
#include "standalone/session/exit_status.h"

namespace genostat::standalone {

void StartPhase::open(const std::function<void()>& make, const std::function<void()>& undo) {
  Phase before = Phase::Starting;
  if (!phase_.compare_exchange_strong(before, Phase::Opening)) platform::exitNow(kInterrupted);
  make();
  before = Phase::Opening;
  if (phase_.compare_exchange_strong(before, Phase::Running)) return;
  undo();
  platform::exitNow(kInterrupted);
}

void StartPhase::interrupt(const std::function<void()>& prepare) {
  // A session is made in a moment, unless a file system hangs.
  constexpr std::chrono::seconds kPatience{2};
  Phase before = phase_.load();
  while (before != Phase::Running) {
    const Phase at = before;
    if (!phase_.compare_exchange_weak(before, Phase::Interrupted)) continue;
    if (prepare) prepare();
    if (at == Phase::Opening) std::this_thread::sleep_for(kPatience);
    platform::exitNow(kInterrupted);
  }
}

}  // namespace genostat::standalone
