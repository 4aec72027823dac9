// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Copying a module's contents with every `uses` spelled out (RFC 7950, sections 7.9.2,
// 7.13 and 7.17).
#include "compiler/spelling/compile.h"

namespace compiler {

// Copies the contents of all files of the module into the written tree, submodules
// where their includes stand. Augments of the top level are children of the root too,
// in out->augments.
void ExpandModule(Output* out);

// The nodes that a `uses` or an augment has brought.
struct BroughtNodes {
  std::vector<xmlNode*> nodes;
  NamedNodes named;  // of many, once one was asked for
};

// The statement of the module's tree that a relative schema node identifier names, from
// one of `roots` on; a missing input or output of an operation is made. NULL: none.
xmlNode* FindBelow(Output* out, BroughtNodes* roots, const xmlNode* identifier);

// The child of that name that is a schema node; a missing input or output of an operation
// is made. NULL: there is none.
xmlNode* SchemaChild(Output* out, xmlNode* parent, std::string_view name);

// Links a node as the last child of `target`; in a choice, a shorthand case becomes
// `case`. Gives what now stands below the target.
xmlNode* PutNode(Output* out, xmlNode* target, xmlNode* node);

// The `case` that a node of a choice stands for, still empty and not linked.
xmlNode* MakeImpliedCase(Output* out, const xmlNode* node);

// Hands a condition to a node, to be moved to its place later; reported where the node
// takes none.
void InheritWhen(Output* out, const xmlNode* when, xmlNode* node, const Place* usedAt);

// The `when`, `if-feature` and `status` statements of a `uses` or augment.
std::vector<const xmlNode*> Inherited(const xmlNode* from);

// Hands them to a node that it brought in.
void Inherit(Output* out, const std::vector<const xmlNode*>& from, xmlNode* node,
             const Place* usedAt);

}  // namespace compiler
