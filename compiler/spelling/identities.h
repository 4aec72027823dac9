// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Identities in bases and defaults (RFC 7950, sections 7.18 and 9.10).
#include <string_view>

#include "compiler/spelling/compile.h"

namespace compiler {

// False: only a revision of the module that is not written has the identity.
bool IsInWrittenRevision(Output* out, Module* module, std::string_view name);

// Rewrites `base`. One that the written revision of its module does not have gives way to
// what it derives from. False: it has left the tree.
bool RewriteBase(Output* out, xmlNode* base);

// Gives the modules of identities in defaults the prefixes that the library knows, before
// arguments are rewritten.
void NameModulesOfDefaults(Output* out);

// The type of the leaf, typedef or deviate that has a default; NULL: there is none.
const xmlNode* TypeOfDefault(Output* out, const xmlNode* parent);

// Rewrites `default`: an identity, or the name of a case. What a deviation deletes waits for
// SettleDeviations(). False: it has left the tree.
bool RewriteDefault(Output* out, xmlNode* byDefault);

// True for the type of a typedef of identityrefs that gives them a default.
bool IsDefaultedIdentity(Compilation* all, const xmlNode* type);

}  // namespace compiler
