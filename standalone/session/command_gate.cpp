#include "standalone/session/command_gate.h"

namespace genostat::standalone {

namespace {
constexpr std::chrono::seconds kEchoTime(1);
}

CommandGate::Passage::Passage(CommandGate& gate) : gate_(gate) {
  const std::lock_guard lock(gate_.mutex_);
  open_ = !gate_.interrupted_;
  gate_.running_ = open_;
}

CommandGate::Passage::~Passage() {
  const std::lock_guard lock(gate_.mutex_);
  gate_.running_ = false;
  gate_.free_.notify_all();
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
