// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// The texts of `when` and `must`, and paths of leafrefs, in the words of the written
// module.
#include <string>

#include "compiler/spelling/compile.h"

namespace compiler {

// Rewrites the condition where it stands, joined with those before it. It may leave the
// tree.
void TranslateCondition(Output* out, xmlNode* statement);

// Rewrites the argument of `path`: each step with a prefix, no blanks.
void RewritePath(Output* out, xmlNode* statement);

// The condition with the names of modules for prefixes: equal for the same meaning,
// whatever prefixes it was written with. `context` is the node that it is evaluated at; a
// node without prefix belongs to its module, an identity without prefix to `bare` (NULL:
// the module that the condition was written in). Empty: it does not parse.
std::string CanonicalCondition(Compilation* all, const xmlNode* statement, const FoundNode& context,
                               const Module* bare);

// The node that a condition is evaluated at (RFC 7950, section 7.21.5), in the trees as
// they are now. Its node is NULL at the top, its output where it is not known.
FoundNode ContextOfCondition(Output* out, const xmlNode* statement);

// The leaf whose type the values of a leafref have: that at the end of a chain of leafrefs,
// of which the last that was found is left in `leaf` and `leafref`. No node: not known.
FoundNode FindReferredLeaf(Compilation* all, FoundNode* leaf, const xmlNode** leafref);

// In a union, members that are leafrefs become the type of their target, where that is
// known.
void ResolveUnionMember(Output* out, xmlNode* type);

}  // namespace compiler
