// SPDX-License-Identifier: BSD-3-Clause
// A signal that is ignored stays so. Others end the program as if there were no handler,
// since the handler is gone when it is called, and raises the signal again.
#include "client/interruption.h"

#include <initializer_list>

namespace {

constexpr std::initializer_list<int> kSignals = {SIGHUP, SIGINT, SIGPIPE, SIGTERM};

void (*volatile waiting)() = nullptr;

sigset_t Signals() noexcept {
  sigset_t set{};
  static_cast<void>(sigemptyset(&set));
  for (const int one : kSignals) static_cast<void>(sigaddset(&set, one));
  return set;
}

void Handle(int number) {
  if (waiting != nullptr) waiting();
  static_cast<void>(raise(number));
}

void Install() noexcept {
  struct sigaction action {};
  action.sa_handler = Handle;
  action.sa_mask = Signals();
  action.sa_flags = static_cast<int>(SA_RESETHAND);
  for (const int one : kSignals) {
    struct sigaction before {};
    if (sigaction(one, nullptr, &before) == 0 && before.sa_handler == SIG_DFL)
      static_cast<void>(sigaction(one, &action, nullptr));
  }
}

}  // namespace

HoldInterruption::HoldInterruption() noexcept {
  const sigset_t held = Signals();
  static_cast<void>(pthread_sigmask(SIG_BLOCK, &held, &before_));
}

HoldInterruption::~HoldInterruption() {
  static_cast<void>(pthread_sigmask(SIG_SETMASK, &before_, nullptr));
}

void OnInterruption(void (*cleanUp)()) noexcept {
  const HoldInterruption held;
  if (waiting == nullptr && cleanUp != nullptr) Install();
  waiting = cleanUp;
}
