// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Memory that is refused to the library, to libxml2 or to a function that they call: a call
// of theirs may give another answer then, so before an answer is believed it is asked
// whether there was enough.
#include <cstdint>

#include <qmodel/error.h>

// Before anything of the library or of libxml2 is made: what is refused is noted from now on.
void WatchMemory();

// Throws std::bad_alloc when memory was refused.
void CheckMemory();

// Notes it for a function that may not throw.
void NoteRefusal() noexcept;

// A function that the library calls, made fit for that: nothing is thrown through the
// library, which holds locks and has no room for exceptions.
template <auto Callback>
struct GuardedCallback;

template <typename... Args, uint32_t (*Callback)(Args...)>
struct GuardedCallback<Callback> {
  static uint32_t Call(Args... args) noexcept {
    try {
      return Callback(args...);
    } catch (...) {
      NoteRefusal();
      return QM_NO_MEMORY;
    }
  }
};

template <auto Callback>
inline constexpr auto kGuarded = &GuardedCallback<Callback>::Call;
