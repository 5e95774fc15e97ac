// Decides between a command thread that wants to run its next command and an interrupt.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>

namespace genostat::standalone {

// Thread-safe.
class CommandGate {
 public:
  // `refuse` is called in place of a command that may not run any more. It does not return.
  explicit CommandGate(std::function<void()> refuse) : refuse_(std::move(refuse)) {}

  // Runs `work` as a command, or refuses it. What `work` throws ends the session.
  void pass(const std::function<void()>& work);

  // No interrupt from now on. False when there was one already.
  bool close();

  enum class Answer { First, Echo, Repeated, Closed };
  // No command begins from now on; one that runs goes on. Programs that pass an interrupt on may do so
  // twice at once: what comes within a second of the first is its echo and means nothing more.
  Answer interrupt();
  bool interrupted() const;

  // Waits until no command runs; false on time-out.
  bool waitUntilFree(std::chrono::milliseconds timeout);

 private:
  bool setRunning(bool wanted);

  const std::function<void()> refuse_;
  mutable std::mutex mutex_;  // guards all below
  std::condition_variable free_;
  std::chrono::steady_clock::time_point interruptedAt_;
  bool running_ = false;
  bool interrupted_ = false;
  bool closed_ = false;
};

}  // namespace genostat::standalone
