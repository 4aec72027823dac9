// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Signals that end the program: an interrupt, a hang-up, a reader that has gone.
#include <csignal>

// While one lives, such signals wait.
class HoldInterruption {
 public:
  HoldInterruption() noexcept;
  ~HoldInterruption();
  HoldInterruption(const HoldInterruption&) = delete;
  HoldInterruption& operator=(const HoldInterruption&) = delete;

 private:
  sigset_t before_{};
};

// Has `cleanUp` called when such a signal comes, before it ends the program; NULL: nothing
// any more. It may call only what a handler may, and sees what was changed while signals
// were held.
void OnInterruption(void (*cleanUp)()) noexcept;
