#include "files/signal_hold.h"

#include <algorithm>
#include <array>

namespace marovia {
namespace {

constexpr std::array kEndingSignals = {SIGINT, SIGTERM, SIGHUP, SIGQUIT};

bool IsIgnored(int signal) {
  struct sigaction action {};
  return ::sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

}  // namespace

SignalHold::SignalHold() {
  sigemptyset(&held_);
  for (const int signal : kEndingSignals) {
    if (!IsIgnored(signal)) sigaddset(&held_, signal);
  }
  ::pthread_sigmask(SIG_BLOCK, &held_, &before_);
}

SignalHold::~SignalHold() {
  ::pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

bool SignalHold::IsAnyWaiting() const {
  sigset_t waiting{};
  sigpending(&waiting);
  return std::ranges::any_of(kEndingSignals, [&](int signal) {
    return sigismember(&held_, signal) == 1 && sigismember(&waiting, signal) == 1;
  });
}

}  // namespace marovia
