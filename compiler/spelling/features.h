// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Features (RFC 7950, sections 5.6.2 and 7.20): what -f and -F decide leaves the tree,
// the node or its condition; of the rest, a conjunction becomes several statements.
#include "compiler/spelling/compile.h"

namespace compiler {

// Rewrites every `if-feature` of the tree, those of enums and bits apart (SettleItems()).
void ApplyFeatures(Output* out);

// Rewrites those of one statement. False: it is to leave, as it depends on what is off.
bool SettleIfFeatures(Output* out, xmlNode* node);

// True when a statement depends on a feature that is off.
bool IsOff(const Output* out, const xmlNode* node);

}  // namespace compiler
