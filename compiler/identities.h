// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Identities in bases and defaults (RFC 7950, sections 7.18 and 9.10).
#include <string_view>

#include "compiler/compile.h"

namespace compiler {

// False: only a revision of the module that is not written has the identity.
bool IsInWrittenRevision(Output* out, Module* module, std::string_view name);

// Rewrites `base`. One that the written revision of its module does not have is lost.
void RewriteBase(Output* out, xmlNode* base);

// Rewrites `default`: an identity, or the name of a case. False: it has left the tree.
bool RewriteDefault(Output* out, xmlNode* byDefault);

// Gives a leaf whose typedef has an identity as its default that default itself.
void MoveIdentityDefault(Output* out, const xmlNode* type);

}  // namespace compiler
