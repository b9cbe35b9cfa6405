#include "core/signal_cleanup.h"

#include <limits.h>
#include <pthread.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstring>
#include <mutex>

namespace drenik {
namespace {

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};

// A slot is free (0), being filled (1) or holds a name the handler removes
// (2). Plain arrays: the handler may touch nothing that allocates.
struct Slot {
  std::atomic<int> state{0};
  char path[PATH_MAX];
};
Slot slots[16];
std::atomic<int> holds{0};
std::atomic<int> pending{0};

[[noreturn]] void RemoveAndEnd(int sig) {
  for (Slot& s : slots)
    if (s.state.load() == 2) unlink(s.path);
  std::signal(sig, SIG_DFL);
  // Inside the handler the signal is blocked; unblocked, it ends the program.
  sigset_t only;
  sigemptyset(&only);
  sigaddset(&only, sig);
  raise(sig);
  pthread_sigmask(SIG_UNBLOCK, &only, nullptr);
  _exit(128 + sig);
}

void OnSignal(int sig) {
  if (holds.load() > 0) {
    pending.store(sig);
    return;
  }
  RemoveAndEnd(sig);
}

void TakeOverSignals() {
  static std::once_flag once;
  std::call_once(once, [] {
    for (int sig : kSignals) {
      struct sigaction old {};
      if (sigaction(sig, nullptr, &old) != 0 || old.sa_handler != SIG_DFL) continue;
      struct sigaction act {};
      act.sa_handler = OnSignal;
      sigemptyset(&act.sa_mask);
      for (int other : kSignals) sigaddset(&act.sa_mask, other);
      sigaction(sig, &act, nullptr);
    }
  });
}

}  // namespace

int RemoveOnSignal(const std::string& path) {
  if (path.size() >= PATH_MAX) return -1;
  TakeOverSignals();
  for (int i = 0; i < static_cast<int>(std::size(slots)); ++i) {
    int free = 0;
    if (!slots[i].state.compare_exchange_strong(free, 1)) continue;
    std::memcpy(slots[i].path, path.c_str(), path.size() + 1);
    slots[i].state.store(2);
    return i;
  }
  return -1;
}

void ForgetOnSignal(int slot) {
  if (slot >= 0 && slot < static_cast<int>(std::size(slots))) slots[slot].state.store(0);
}

SignalsHeld::SignalsHeld() {
  TakeOverSignals();
  ++holds;
}

SignalsHeld::~SignalsHeld() {
  if (--holds == 0)
    if (const int sig = pending.exchange(0)) RemoveAndEnd(sig);
}

}  // namespace drenik
