// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Refinements of the nodes that a `uses` brings in (RFC 7950, section 7.13.2).
#include "compiler/spelling/expand.h"

namespace compiler {

// Applies one refine to its node below `roots`.
void Refine(Output* out, const xmlNode* refine, BroughtNodes* roots, const Place* usedAt);

}  // namespace compiler
