// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// What a deviation deletes must be, to the letter, what its target has once that is
// compiled (RFC 7950, section 7.20.3.2).
#include "compiler/compile.h"

namespace compiler {

// A `must` in `deviate delete` gets the text of the target's own. False: it is none.
bool RewriteDeletedMust(Output* out, xmlNode* must);

}  // namespace compiler
