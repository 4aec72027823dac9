// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Defaults that name an enum, bit or identity that has left by the decisions of -f and -F
// (RFC 7950, section 7.6.4: a default must not depend on a feature).
#include "compiler/spelling/compile.h"

namespace compiler {

// True for the default of a leaf, leaf-list, typedef or deviate whose value has left.
bool IsDefaultOff(Output* out, const xmlNode* byDefault);

// Takes it out of the tree, and says so.
void LeaveDefault(Output* out, xmlNode* byDefault);

// A leaf or typedef whose own restriction has lost the default of its typedef goes without:
// its type is written so that it brings none.
void LeaveDefaultOfTypedef(Output* out, xmlNode* type);

// Fits deviations to targets that have lost a default.
void SettleDeviatedDefaults(Output* out);

}  // namespace compiler
