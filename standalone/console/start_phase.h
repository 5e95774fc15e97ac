// How far a program's start is when an interrupt comes.
#pragma once

#include <atomic>
#include <functional>

namespace genostat::standalone {

// The session's folder must not stay behind where the interrupt comes while the session is being made.
class StartPhase {
 public:
  // Makes the session; from then on it may be interrupted. If an interrupt has come meanwhile, undoes that
  // and ends the program. On the command thread.
  void open(const std::function<void()>& make, const std::function<void()>& undo);

  // Returns where the session can be interrupted. Earlier calls `prepare` and ends the program, if need be
  // after the session that is being made. On the thread of the interrupt.
  void interrupt(const std::function<void()>& prepare = {});

 private:
  enum class Phase { Starting, Opening, Running, Interrupted };
  std::atomic<Phase> phase_{Phase::Starting};
};

}  // namespace genostat::standalone
