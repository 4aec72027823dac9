// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// The texts of `when` and `must`, and paths of leafrefs, in the words of the written
// module.
#include <string>

#include "compiler/compile.h"

namespace compiler {

// Rewrites the condition where it stands, joined with those before it. It may leave the
// tree.
void TranslateCondition(Output* out, xmlNode* statement);

// Rewrites the argument of `path`: each step with a prefix, no blanks.
void RewritePath(Output* out, xmlNode* statement);

// The condition with the names of modules for prefixes: equal for the same meaning,
// whatever prefixes it was written with. `local` is the module that a node without prefix
// belongs to. Empty: it does not parse.
std::string CanonicalCondition(const xmlNode* statement, const Module* local);

// In a union, members that are leafrefs become the type of their target, where that is
// known.
void ResolveUnionMember(Output* out, xmlNode* type);

}  // namespace compiler
