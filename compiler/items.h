// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// The enums and bits of types, which may depend on features (RFC 7950, sections 9.6.4 and
// 9.7.4).
#include "compiler/compile.h"

namespace compiler {

// Takes those that depend on what is off out of a type of the written tree, and of a union
// the members that have no value left.
void SettleItems(Output* out, xmlNode* type);

}  // namespace compiler
