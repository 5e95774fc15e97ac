#include "platform/suspension.h"

#include <pthread.h>
#include <unistd.h>

#include <csignal>
#include <thread>
#include <utility>

namespace genostat::platform {

namespace {

sigset_t suspensionSignal() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGTSTP);
  return signals;
}

}  // namespace

void onSuspend(std::function<void()> handler) {
  struct sigaction action = {};
  sigaction(SIGTSTP, nullptr, &action);
  // A shell without control of jobs has its programs ignore it.
  if (action.sa_handler == SIG_IGN) return;
  const sigset_t signals = suspensionSignal();
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  // The new thread is nobody's choice for the other signals.
  sigset_t all;
  sigset_t own;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &own);
  std::thread([signals, handler = std::move(handler)] {
    int signal = 0;
    while (sigwait(&signals, &signal) == 0) {
      handler();
    }
  }).detach();
  pthread_sigmask(SIG_SETMASK, &own, nullptr);
}

void suspendProgram() {
  // Not SIGSTOP: the system ignores this one where no shell could make the program go on.
  const sigset_t signals = suspensionSignal();
  kill(getpid(), SIGTSTP);
  pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

}  // namespace genostat::platform
