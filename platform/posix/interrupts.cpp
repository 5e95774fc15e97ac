#include "platform/interrupts.h"

#include <pthread.h>

#include <csignal>
#include <thread>
#include <utility>

namespace genostat::platform {

void onEachInterrupt(std::function<void(Interrupt)> handler) {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
    struct sigaction action = {};
    sigaction(signal, nullptr, &action);
    // What the parent chose to ignore (nohup) stays ignored.
    if (action.sa_handler != SIG_IGN) sigaddset(&signals, signal);
  }
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  std::thread([signals, handler = std::move(handler)] {
    int signal = 0;
    while (sigwait(&signals, &signal) == 0) {
      // A handler may take its time; the next signal does not wait for it.
      std::thread(handler, signal == SIGINT ? Interrupt::Key : Interrupt::End).detach();
    }
  }).detach();
}

}  // namespace genostat::platform
