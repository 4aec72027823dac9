// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// A leaf that gets what its typedef stands for, a path or a union of its own, gets the
// default and the units of the typedef, too (see typedefs.h), which the library takes for
// the leaf's own. Deviations do not: for them the leaf has none of its own, and another
// type or `mandatory` takes the typedef's away.
#include "compiler/spelling/compile.h"

namespace compiler {

// Makes of the deviation what leaves the target with the properties that it is to have.
void SettleTypedefProperties(Output* out, xmlNode* deviation, const FoundNode& target);

}  // namespace compiler
