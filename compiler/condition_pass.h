// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Conditions in the library's subset: the last word on each `when` and `must`, once the
// trees of all modules are there.
#include <vector>

#include "compiler/compile.h"

namespace compiler {

// Rewrites the conditions of all outputs that are not stopped.
void SettleConditions(const std::vector<Output*>& outputs);

}  // namespace compiler
