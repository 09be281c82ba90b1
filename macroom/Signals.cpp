#include "Signals.h"

#include <array>
#include <signal.h>

namespace quarn::room::Signals {

namespace {

constexpr std::array held = {SIGCHLD, SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGUSR1, SIGUSR2};

sigset_t heldSet() {
  sigset_t set;
  sigemptyset(&set);
  for (const int number : held) sigaddset(&set, number);
  return set;
}

}  // namespace

void hold() {
  const sigset_t set = heldSet();
  // An ignored signal is never delivered, and with SIGCHLD ignored no child could be waited for.
  for (const int number : held) ::signal(number, SIG_DFL);
  ::sigprocmask(SIG_BLOCK, &set, nullptr);
}

Arrival next() {
  const sigset_t set = heldSet();
  siginfo_t info{};
  int number = 0;
  do {
    number = ::sigwaitinfo(&set, &info);
  } while (number < 0);
  return {number, info.si_code == SI_USER || info.si_code == SI_QUEUE || info.si_code == SI_TKILL};
}

void backToDefault() {
  const sigset_t set = heldSet();
  ::sigprocmask(SIG_UNBLOCK, &set, nullptr);
}

}  // namespace quarn::room::Signals
