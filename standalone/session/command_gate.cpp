#include "standalone/session/command_gate.h"

namespace genostat::standalone {

namespace {
constexpr std::chrono::seconds kEchoTime(1);
}

bool CommandGate::setRunning(bool wanted) {
  const std::lock_guard lock(mutex_);
  running_ = wanted && !interrupted_;
  free_.notify_all();
  return running_;
}

void CommandGate::pass(const std::function<void()>& work) {
  if (!setRunning(true)) return refuse_();
  work();
  setRunning(false);
}

bool CommandGate::close() {
  const std::lock_guard lock(mutex_);
  closed_ = !interrupted_;
  return closed_;
}

CommandGate::Answer CommandGate::interrupt() {
  const std::lock_guard lock(mutex_);
  const auto now = std::chrono::steady_clock::now();
  if (interrupted_) return now - interruptedAt_ < kEchoTime ? Answer::Echo : Answer::Repeated;
  interrupted_ = true;
  interruptedAt_ = now;
  return closed_ ? Answer::Closed : Answer::First;
}

bool CommandGate::interrupted() const {
  const std::lock_guard lock(mutex_);
  return interrupted_;
}

bool CommandGate::waitUntilFree(std::chrono::milliseconds timeout) {
  std::unique_lock lock(mutex_);
  return free_.wait_for(lock, timeout, [this] { return !running_; });
}

}  // namespace genostat::standalone
