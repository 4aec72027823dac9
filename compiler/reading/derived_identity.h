// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Derivation of identities (RFC 7950, section 7.18.2).
#include "compiler/reading/records.h"

namespace compiler {

// True when the identity has `base` among its bases or theirs.
bool IsDerivedFrom(const xmlNode* identity, const xmlNode* base);

}  // namespace compiler
