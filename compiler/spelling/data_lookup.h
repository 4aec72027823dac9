// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Nodes of the data tree in the expanded trees of all modules: through choices and cases,
// inputs and outputs, and into what augments hang there.
#include <string_view>

#include "compiler/spelling/compile.h"
#include "compiler/words/path.h"
#include "compiler/words/xpath.h"

namespace compiler {

// The node of data, or the operation or notification, that the node stands in. Its node
// is NULL at the top.
FoundNode DataParent(Compilation* all, const FoundNode& node);

// The child of that name that belongs to `module`; `parent` without node: at the top.
FoundNode DataChild(Compilation* all, const FoundNode& parent, Module* module,
                    std::string_view name);

// The target of an augment of the top level, in the tree as it is now.
FoundNode AugmentTarget(Compilation* all, Output* out, const xmlNode* augment);

// The leaf that a leafref points to. `type` is its statement, as it was read or a copy,
// `leaf` the node that has it (without node: an absolute path only).
FoundNode LeafrefTarget(Compilation* all, const FoundNode& leaf, const xmlNode* type);

// The node that a location path of a condition names from `context`; it looks at names
// and "..", not at predicates. No node: there is none, or the path is more than that.
FoundNode PathTarget(Compilation* all, const FoundNode& context, Module* words, const Xpath& xpath,
                     uint32_t path);

// The type of a leaf or leaf-list, as it stands in its tree; NULL: it has none.
const xmlNode* TypeOfNode(const FoundNode& node);

}  // namespace compiler
