// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// Memory of runs that a test does not know of: what they take is neither counted nor
// refused by the hooks that the test has registered.
namespace own_memory {

// Puts itself before the hooks of the process, which may come to be registered later.
void StandBeforeHooks();

// While one lives, blocks of this thread come from the C library.
class Scope {
 public:
  Scope();
  ~Scope();
  Scope(const Scope&) = delete;
  Scope& operator=(const Scope&) = delete;

 private:
  bool outer_;
};

// Whether the hooks have refused a block of this thread since the last call.
bool TakeRefused();

}  // namespace own_memory
