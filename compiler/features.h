// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Features (RFC 7950, sections 5.6.2 and 7.20): what -f and -F decide leaves the tree,
// the node or its condition; of the rest, a conjunction becomes several statements.
#include "compiler/compile.h"

namespace compiler {

// Rewrites every `if-feature` of the tree.
void ApplyFeatures(Output* out);

}  // namespace compiler
