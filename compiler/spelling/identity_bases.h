// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Identities with all identities that they derive from (RFC 7950, section 7.18.2).
#include <string>

#include "compiler/spelling/compile.h"

namespace compiler {

// Gives each identity of a module whose arguments are rewritten the bases of its bases as
// its own. Derivation is transitive, so that this says nothing new; but the library's
// derived-from() looks at an identity's own bases only.
void CompleteBases(Output* out);

// The nearest of the identities that one derives from, which the revision that is written
// lacks, as the output names it; empty: it lacks these, too.
std::string NearestWrittenBase(Output* out, const xmlNode* definition);

// Identities that depend on a feature that is off stand in the tree again where one that
// stays has them as its base.
void RestoreBases(Output* out);

}  // namespace compiler
