// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// The default of a typedef of identityref stands on each leaf of that type, where the
// library takes it for the leaf's own (see identities.h). Deviations do not: for them the
// leaf has none of its own, and another type or `mandatory` takes the typedef's away.
#include "compiler/compile.h"

namespace compiler {

// Makes of the deviation what leaves the target with the default that it is to have.
void SettleTypedefDefault(Output* out, xmlNode* deviation, const FoundNode& target);

}  // namespace compiler
