// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// What a deviation deletes must be, to the letter, what its target has once that is
// compiled (RFC 7950, section 7.20.3.2).
#include "compiler/spelling/compile.h"

namespace compiler {

// Gives each `must` and `default` in `deviate delete` the text of the target's own, after
// all conditions have been settled.
void SettleDeviations(Output* out);

}  // namespace compiler
